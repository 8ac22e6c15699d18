' Without Option Explicit names spring into being.
count = count + 1
Print count & TypeName(nobody)
'> 1Empty
For i = 1 To 2 : total = total + i : Next
Print TOTAL
'> 3
Sub Inside()
    fresh = "local"
    count = 10
    list = Array(1, 2)
    list(0) = list(1) + 5
    Grow list(0)
    Print fresh & list(0)
End Sub
Sub Grow(n) : n = n + 1 : End Sub
Inside
'> local8
Print count & "[" & fresh2 & "]"
'> 10[]
Sub Fill(a, b) : a = "A" : b = "B" : End Sub
Fill one, two
Print one & two
'> AB
Sub Caller()
    Fill three, four
    Print three & four
End Sub
Caller
'> AB
ReDim made(1)
made(1) = "m"
Print made(1)
'> m

' Constants exist before their line, and may hide in an If that is never entered.
Print kLater & kNegative & vbLf & LCase("X") & kText
'> 5-2
'> xtext
If False Then
    Const kLater = 5
End If
Const kNegative = -2, kText = "text"
Private Const kPrivate = True
Public shared, field(1)
Private hidden
shared = 1 : field(1) = 2 : hidden = 3
Print shared & field(1) & hidden & kPrivate
'> 123True
Sub LocalConstant()
    Const kNegative = 7
    Dim count
    count = kNegative
    Print count
End Sub
LocalConstant
'> 7
Print count
'> 10
Function Date2() : Date2 = 1 : End Function
Default = 1 : Error = 2 : Step = 3 : Property = 4 : Explicit = 5
Print Default + Error + Step + Property + Explicit
'> 15
Print Eval("count + 1") & Eval("count = 10") & Eval(5)
'> 11True5
Sub EvalsLocals(a)
    Dim b
    b = 3
    Print Eval("a * b + Square(a)")
End Sub
Function Square(n) : Square = n * n : End Function
EvalsLocals 2
'> 10
Sub EvalsOthers()
    here = 4
    Print Eval("TypeName(Print) & here & count")
    Print TypeName(Print)
End Sub
EvalsOthers
'> Printer410
'> Printer
