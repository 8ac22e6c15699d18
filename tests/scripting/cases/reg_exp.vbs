' Regular expressions: what they find, and what they put in its place. `flags` has g, i, m.
Function NewPattern(source, flags)
    Set NewPattern = New RegExp
    NewPattern.Pattern = source
    NewPattern.Global = InStr(flags, "g") > 0
    NewPattern.IgnoreCase = InStr(flags, "i") > 0
    NewPattern.MultiLine = InStr(flags, "m") > 0
End Function
Sub Find(source, flags, text)
    Dim matches, match, i, line
    line = source & ":"
    Set matches = NewPattern(source, flags).Execute(text)
    For Each match In matches
        line = line & " " & match.FirstIndex & "+" & match.Length & "[" & match.Value & "]"
        For i = 0 To match.SubMatches.Count - 1
            line = line & "(" & match.SubMatches(i) & ")"
        Next
    Next
    Print Replace(Replace(line, vbLf, "\n"), vbCr, "\r")
End Sub
Sub Put(source, flags, text, replacement)
    Print source & ": " & NewPattern(source, flags).Replace(text, replacement)
End Sub

Find "a", "", "banana"
Find "a", "g", "banana"
Find "AN", "gi", "banana"
Find "x", "g", "banana"
Find "(\w+)@(\w+)\.(com|org)", "g", "me@site.com, you@other.org"
Find "(a)|(b)", "g", "ab"
Find "", "g", "ab"
Find "^.", "g", "a" & vbLf & "b"
Find "^.", "gm", "a" & vbLf & "b"
Find "(.)$", "g", "a" & vbLf & "b"
Find "(.)$", "gm", "a" & vbLf & "b"
Find "\d{2,3}", "g", "1 22 333 4444"
Find "<(\w+)>.*?</\1>", "g", "<b>x</b><i>y</i>"
Find "[^\s,;]+", "g", "a, b;c" & vbTab & "d"
Find "a(?=b)|c(?!d)", "g", "ab ac cd ce"
Find "(?:ab)+", "", "xababy"
Find "\x41\u0042\t", "", "AB" & vbTab
Find "\bin\b", "gi", "In inn in"
Find "[\[\]]", "g", "a[0]"
Find "[a-c\-]+", "", "x-abc"
Find "\/\-\.\@", "", "/-.@"
Find "\.|\(|\$", "g", "a.b(c$"
Find "a{,2}", "", "a{,2}"
Find "[[:a]]", "g", "a:]"

Put "a", "", "banana", "o"
Put "a", "g", "banana", "o"
Put "(\d+)-(\d+)", "g", "1-2 33-44", "$2+$1"
Put "(b)", "", "abc", "[$1$1$2$10$0]"
Put "b", "g", "abcb", ""
Put "x", "g", "abc", "y"
Put "", "g", "ab", "-"
Put "(a)(b)?", "g", "aab", "<$1$2>"
Put "\s+", "g", "  a   b ", " "

Dim r, m
Set r = New RegExp
Print TypeName(r) & r.Global & r.IgnoreCase & r.MultiLine & "[" & r.Pattern & "]"
r.Pattern = "(\d)(x)?"
Print r.Test("a1") & r.Test("b")
Set m = r.Execute("12")
Print m.Count & m(0) & m.Item(0).Value & m(0).SubMatches(0) & m(0).SubMatches.Count & IsEmpty(m(0).SubMatches(1))
r.Pattern = "\d"
r.Global = True
Print r.Execute("12").Count & m.Count

'> a: 1+1[a]
'> a: 1+1[a] 3+1[a] 5+1[a]
'> AN: 1+2[an] 3+2[an]
'> x:
'> (\w+)@(\w+)\.(com|org): 0+11[me@site.com](me)(site)(com) 13+13[you@other.org](you)(other)(org)
'> (a)|(b): 0+1[a](a)() 1+1[b]()(b)
'> : 0+0[] 1+0[] 2+0[]
'> ^.: 0+1[a]
'> ^.: 0+1[a] 2+1[b]
'> (.)$: 2+1[b](b)
'> (.)$: 0+1[a](a) 2+1[b](b)
'> \d{2,3}: 2+2[22] 5+3[333] 9+3[444]
'> <(\w+)>.*?</\1>: 0+8[<b>x</b>](b) 8+8[<i>y</i>](i)
'> [^\s,;]+: 0+1[a] 3+1[b] 5+1[c] 7+1[d]
'> a(?=b)|c(?!d): 0+1[a] 4+1[c] 9+1[c]
'> (?:ab)+: 1+4[abab]
'> \x41\u0042\t: 0+3[AB	]
'> \bin\b: 0+2[In] 7+2[in]
'> [\[\]]: 1+1[[] 3+1[]]
'> [a-c\-]+: 1+4[-abc]
'> \/\-\.\@: 0+4[/-.@]
'> \.|\(|\$: 1+1[.] 3+1[(] 5+1[$]
'> a{,2}: 0+5[a{,2}]
'> [[:a]]: 1+2[:]]
'> a: bonana
'> a: bonono
'> (\d+)-(\d+): 2+1 44+33
'> (b): a[bb$2b0$0]c
'> b: ac
'> x: abc
'> : -a-b-
'> (a)(b)?: <a><ab>
'> \s+:  a b 
'> IRegExp2FalseFalseFalse[]
'> TrueFalse
'> 11112True
'> 21
