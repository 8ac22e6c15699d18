Option Explicit
Dim a, b, arr(2), thing, s

Sub Twice(x) : x = x * 2 : End Sub
Sub TwiceOfCopy(ByVal x) : x = x * 2 : End Sub
Function Sum(ByRef x, ByVal y)
    Sum = x + y
    x = 0
End Function

a = 1 : Twice a : Print a
'> 2
Twice(a) : Print a
'> 2
Twice (a) : Print a
'> 2
Call Twice(a) : Print a
'> 4
Call Twice((a)) : Print a
'> 4
TwiceOfCopy a : Print a
'> 4
b = Sum(a, 3) : Print b & " " & a
'> 7 0
Print Sum(5, 6)
'> 11

' Elements are passed by reference too, also of arrays in arrays.
arr(1) = 5
Twice arr(1) : Print arr(1)
'> 10
Twice (arr(1)) : Print arr(1)
'> 10
Dim nested
nested = Array(1, Array(2, 3))
Twice nested(1)(1) : Print nested(1)(1)
'> 3
Sub Refill(element)
    element = "new"
    ReDim dyn(0)
End Sub
Dim dyn()
ReDim dyn(3)
Refill dyn(2)
Print UBound(dyn)
'> 0
Sub FillAll(list)
    Dim i
    For i = 0 To UBound(list) : list(i) = i * i : Next
End Sub
FillAll arr
Print Join(arr, ",")
'> 0,1,4

' A statement's first brackets are an operand unless = follows.
Sub Show(x) : Print "show " & x : End Sub
Show(10)+5
'> show 15
Show (1) & "x"
'> show 1x
Show -1
'> show -1
Show Not True
'> show False
Sub Two(x, y) : Print x & "/" & y : End Sub
Two (1), 2
'> 1/2
Two (1) * 2, (3)
'> 2/3
Call Two(1, 2)
'> 1/2

' Functions and their results.
Function Factorial(n)
    If n <= 1 Then
        Factorial = 1
        Exit Function
    End If
    Factorial = n * Factorial(n - 1)
End Function
Print Factorial(10)
'> 3628800
Function Words
    Words = Split("a b c", " ")
End Function
Print Words()(1)
'> b
Print UBound(Words)
'> 2
Function Build()
    Build = "x"
    Build = Build & "y"
End Function
Print Build & Build()
'> xyxy
Function NoResult() : End Function
Print TypeName(NoResult)
'> Empty
Function Objects()
    Set Objects = CreateObject("Test.Thing")
End Function
Print TypeName(Objects)
'> Thing
Function Shadow(a)
    Dim b
    b = a : a = a + 1
    Shadow = b
End Function
a = 1 : b = 7
Print Shadow(a) & a & b
'> 127
' Procedures may stand before or behind their calls, and within other names' case.
LATER
'> later
Sub Later() : Print "later" : End Sub
' Of two procedures of one name the last counts.
Sub Again() : Print "first" : End Sub
Sub Again() : Print "second" : End Sub
Again
'> second

' A function of the page hides the library's.
Function Trim(x) : Trim = "my " & x : End Function
Print Trim("t")
'> my t

' Members that write to their arguments, optional and omitted ones.
Set thing = CreateObject("Test.Thing")
a = 1 : b = 2
thing.Swap a, b
Print a & b
'> 21
thing.Swap arr(0), arr(2)
Print Join(arr, ",")
'> 4,1,0
thing.Grow a : Print a
'> 3
thing.Grow (a) : Print a
'> 3
Print thing.Optional & thing.Optional("x") & thing.Optional(, "y") & thing.Optional(1, , 3)
'> abcxbcayc1b3
Print thing.Optional(,,"z")
'> abz
Sub Omitted(x, y) : Print TypeName(x) & " " & y : End Sub
Omitted , 2
'> Error 2
