Option Explicit
Dim a, i, s
a = 1 + 2 * 3
Print a
'> 7
If a = 7 Then Print "yes" Else Print "no"
'> yes
For i = 1 To 3
    s = s & i & ","
Next
Print s
'> 1,2,3,
Print 2 ^ 3 ^ 2
'> 64
Print -3 ^ 2
'> 9
