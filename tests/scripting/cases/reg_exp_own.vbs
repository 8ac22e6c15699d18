' Regular expressions: characters outside ASCII, line ends, names of matches, and what is refused.
Dim r, m, i
Set r = New RegExp
r.Global = True
r.Pattern = "[ä-ü]" : r.IgnoreCase = True
Set m = r.Execute("aÄ" & ChrW(&HD83D) & ChrW(&HDE00) & "ü")
For i = 0 To m.Count - 1 : Print m(i).FirstIndex & m(i).Length & m(i) : Next
Print TypeName(m) & TypeName(m(0)) & TypeName(m(0).SubMatches)
r.Pattern = "." : Set m = r.Execute(ChrW(&HD83D) & "x")
Print m.Count & m(1) & m(1).FirstIndex
Print r.Execute("a" & vbCrLf & "b").Count
r.Pattern = "^\w+$" : r.MultiLine = True
Print r.Replace("one" & vbCrLf & "two" & vbLf & "three", "<$&>") = "<one>" & vbCrLf & "<two>" & vbLf & "<three>"
r.Pattern = "b" : Print r.Replace("abc", "[$`|$&|$'|$$|$]")
r.Pattern = "(1)(2)(3)(4)(5)(6)(7)(8)(9)(0)" : Print r.Replace("1234567890", "$10$11$1")
r.Pattern = "\A\z\e" : Print r.Test("Aze") ' no more than letters
r.Pattern = "(z)((a+)?(b+)?(c))*" : Set m = r.Execute("zaacbbbcac")
Print m(0) & m(0).SubMatches(0)
For Each i In m(0).SubMatches : Print "part " & i : Next

On Error Resume Next
Sub Refuse(pattern)
    On Error Resume Next
    r.Pattern = pattern
    r.Test "x"
    Print Left(pattern, 30) & ": " & Err.Number & " " & Err.Description
End Sub
Refuse "(" : Refuse "a)" : Refuse "[a" : Refuse "[z-a]" : Refuse "*" : Refuse "a++" : Refuse "\"
Refuse "(?<=a)b" : Refuse "(?R)" : Refuse "(*LIMIT_MATCH=4000000000)a" : Refuse "(?>a)" : Refuse "\1" : Refuse "a{2,1}"
Refuse String(300, "(") & String(300, ")")
Refuse String(70000, "a")
Refuse "((((a{500}){500}){500}){500})"
r.Pattern = "x" : m = r.Execute("x")(1) : Print Err.Number : Err.Clear
m = r.Execute("x")(0).SubMatches(0) : Print Err.Number : Err.Clear
r.Pattern = "(a|aa)+$" : r.Test String(100, "a") & "b" : Print Err.Number & " " & Err.Description : Err.Clear
r.Pattern = "b*" : Print r.Execute("abc").Count & r.Replace("abc", "-")
r.Pattern = "(a|b)*c" : Print r.Test(String(5000, "ab")) : Print Err.Number : Err.Clear
r.Pattern = "(x|y)*$" : Print r.Execute(String(20000, "x"))(0).Length & " " & Err.Number

'> 11Ä
'> 41ü
'> IMatchCollection2IMatch2ISubMatches
'> 2x1
'> 3
'> True
'> a[a|b|c|$|$]c
'> 0111
'> True
'> zaacbbbcacz
'> part z
'> part ac
'> part a
'> part bbb
'> part c
'> (: 5020 Expected ')' in regular expression
'> a): 5017 Syntax error in regular expression
'> [a: 5019 Expected ']' in regular expression
'> [z-a]: 5021 Invalid range in character set
'> *: 5018 Unexpected quantifier
'> a++: 5018 Unexpected quantifier
'> \: 5017 Syntax error in regular expression
'> (?<=a)b: 5017 Syntax error in regular expression
'> (?R): 5017 Syntax error in regular expression
'> (*LIMIT_MATCH=4000000000)a: 5018 Unexpected quantifier
'> (?>a): 5017 Syntax error in regular expression
'> \1: 5017 Syntax error in regular expression
'> a{2,1}: 5017 Syntax error in regular expression
'> ((((((((((((((((((((((((((((((: 7 Out of memory
'> aaaaaaaaaaaaaaaaaaaaaaaaaaaaaa: 7 Out of memory
'> ((((a{500}){500}){500}){500}): 7 Out of memory
'> 9
'> 9
'> 5 The regular expression needs too many steps for this text
'> 4-a--c-
'> False
'> 0
'> 20000 0
