' Every statement of the language in its forms.
Option Explicit
Dim i, j, s, n

If False Then
    Print "wrong"
ElseIf 1 = 2 Then
    Print "wrong"
ElseIf True Then
    Print "elseif"
Else
    Print "wrong"
End If
'> elseif

If True Then Print "a" : Print "b" Else Print "c"
'> a
'> b
If False Then Print "a" : Print "b" Else Print "c" : Print "d"
'> c
'> d
If True Then If False Then Print "x" Else Print "inner else"
'> inner else
If True Then Print "ended" End If
'> ended
If Null Then Print "wrong" Else Print "null is false"
'> null is false

Select Case 2 + 1
Case 1, 2
    Print "low"
Case 3, 4: Print "three or four"
Case Else
    Print "else"
End Select
'> three or four
Select Case "b"
Case "a" Print "a"
Case Else Print "not a"
End Select
'> not a
Select Case 9
End Select

For i = 10 To 1 Step -3 : s = s & i & " " : Next
Print s & "then " & i
'> 10 7 4 1 then -2
For i = 1 To 0 : Print "wrong" : Next
Print i
'> 1
s = ""
For i = 0 To 1 Step 0.25 : s = s & i & " " : Next
Print s
'> 0 0.25 0.5 0.75 1 
For i = 1 To 10
    If i = 4 Then Exit For
Next
Print i
'> 4
s = ""
For i = 1 To 5
    i = i + 1
    s = s & i
Next
Print s
'> 246

s = ""
For Each i In Array("x", "y", "z")
    s = s & i
    If i = "y" Then Exit For
Next
Print s & i
'> xyy
For Each i In Array() : Print "wrong" : Next

i = 0
Do While i < 2 : i = i + 1 : Loop
Do Until i >= 4 : i = i + 1 : Loop
Do : i = i + 1 : Loop While i < 6
Do
    i = i + 1
Loop Until i >= 8
While i < 10
    i = i + 1
Wend
Do
    i = i + 1
    Do
        Exit Do
    Loop
    If i > 11 Then Exit Do
Loop
Print i
'> 12

With CreateObject("Test.Thing")
    .Caption = "with"
    ' A blank before the dot begins an argument.
    Print .Caption
    .Item("k") = 5
    Print .Item("k") + 1
    With .Names
        Print .Count
    End With
    .Caption = ""
End With
'> with
'> 6
'> 3

n = 1 : i = 2 _
    : j = 3
Print n & i & _
    j
'> 123
Rem a remark
Print "after" ' a comment : Print "wrong"
'> after
Print "quote "" inside" & "" & "" : Rem the rest
'> quote " inside
stop
If i = 2 Then
    ' nothing but a comment
End If
