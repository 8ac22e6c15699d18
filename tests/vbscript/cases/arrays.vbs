Option Explicit
Dim fixed(2), grid(1, 2), dyn(), a, b, i, x, s

Print UBound(fixed) & UBound(grid, 1) & UBound(grid, 2) & LBound(grid)
'> 2120
fixed(0) = "a" : fixed(2) = fixed(0) & "c"
Print Join(fixed, "-")
'> a--ac
grid(1, 2) = 12 : grid(0, 1) = grid(1, 2) - 11
s = ""
For Each x In grid : s = s & "[" & x & "]" : Next
Print s
'> [][][1][][][12]

' Assignment copies.
a = fixed : a(0) = "changed"
Print fixed(0) & a(0)
'> achanged
b = Array(1, Array(2, 3))
b(1)(0) = 20
Print b(1)(0) + b(1)(1)
'> 23
a = b(1) : a(0) = 0
Print b(1)(0)
'> 20

ReDim dyn(1)
dyn(0) = 1 : dyn(1) = 2
ReDim Preserve dyn(3)
Print UBound(dyn) & dyn(1) & TypeName(dyn(3))
'> 32Empty
ReDim dyn(0), a(1, 1)
Print TypeName(dyn(0)) & UBound(a, 2)
'> Empty1
ReDim Preserve a(1, 5)
Print UBound(a, 2)
'> 5
ReDim a(-1)
Print UBound(a)
'> -1
Sub Declares()
    ReDim local(4)
    Print UBound(local)
End Sub
Declares
'> 4

Erase fixed : Print "<" & fixed(0) & ">"
'> <>
Erase dyn
On Error Resume Next
Print UBound(dyn)
Print Err.Number
'> 9
On Error GoTo 0
b = Array(Array(1, 2), 3)
Erase b(0)
b(0) = 1

' The loop sees the array as it was.
a = Array(1, 2, 3)
s = ""
For Each x In a
    a(2) = 9
    x = x + 1
    s = s & x
Next
Print s & a(0) & a(2)
'> 23419
ReDim dyn(2)
For i = 0 To 2 : dyn(i) = Array(i, i * i) : Next
For Each x In dyn : Print x(0) & ":" & x(1) : Next
'> 0:0
'> 1:1
'> 2:4
a = Split("a,b,c", ",")
Print a("1") & a(1.5) & Split("x y")(1)
'> bcy
