Option Explicit
Dim a, b, c, t
' Precedence, left to right.
Print 2 + 3 * 4 - 6 / 3
'> 12
Print 7 \ 2 * 3
'> 1
Print 17 Mod 5 * 2
'> 7
Print 10 - 4 - 3
'> 3
Print 2 ^ -1
'> 0.5
Print "a" & 1 + 2 & "b"
'> a3b
Print Not True Or True
'> True
Print 1 < 2 = True
'> True
Print True Or True And False
'> True
Print True Xor True Or True
'> False
Print (1 Or 6) & (7 And 3) & (5 Xor 1) & (1 Eqv 1) & (2 Imp 1)
'> 734-1-3
Print 5 =< 5 And 6 => 5 And 4 >< 5
'> True
Print - - 3
'> 3
Print 1 - -1
'> 2
' No short circuit.
Function Loud(x)
    Print "called"
    Loud = x
End Function
If Loud(False) And Loud(True) Then Print "wrong"
'> called
'> called

' Literals.
Print TypeName(1) & TypeName(32768) & TypeName(3000000000) & TypeName(1.0) & TypeName(1e3)
'> IntegerLongDoubleDoubleDouble
Print &HFFFF & " " & &HFFFF& & " " & &H10000 & " " & &O17 & " " & TypeName(&H8000) & &hff
'> -1 65535 65536 15 Long255
Print .5 + 1.
'> 1.5
Print 1.5E2 & " " & 1e-2
'> 150 0.01
Print Year(#2026-03-04#) & " " & Month(#12/31/1999#) & " " & Hour(#1:30 PM#)
'> 2026 12 13
Print TypeName(#2026-03-04#) & TypeName(Null) & TypeName(Empty) & TypeName(Nothing) & TypeName(True)
'> DateNullEmptyNothingBoolean
a = 3
Print "n"&a&"m"
'> n3m
Print "x" &a& "y"
'> x3y
Print &HA
'> 10
[odd name] = 4
Dim [odd name]
Print [odd name] + [A]
'> 7

' Literal operands compare by other rules than variables.
b = "10" : c = 10
Print (b = 10) & (c = "10") & (b = c) & (b > c) & ("010" = 10)
'> TrueTrueFalseTrueTrue
Print ("1" = True) & (Empty = 0) & (Empty = "") & (a = 3.0)
'> FalseTrueTrueTrue
Print IsNull(Null = 1)
'> True
Print (Nothing Is Nothing)
'> True
Print Not (CreateObject("Test.Thing") Is Nothing)
'> True

' What an expression read before a call is what the variable held then.
Dim g
g = 1
Function Bump()
    g = g + 1
    Bump = g
End Function
Print g + Bump
'> 3
Print g & "," & Bump() & "," & g
'> 2,3,3
g = "s"
Function Tail()
    g = g & "!"
    Tail = "t"
End Function
g = g & Tail()
Print g
'> st
t = "ab"
t = t & t & "c" & t
Print t
'> ababcab
t = Null
t = t & Null
Print IsNull(t)
'> True
t = 1
t = t & 2
Print t + 1
'> 13
