' Classes: variables, methods, properties, their access, and when objects begin and end.

Set early = New Point ' a class is known before its line
early.X = 3 : early.Y = 4
Print early.Length & " " & TypeName(early) & " " & IsObject(early) & " " & (early Is Nothing)

Class Point
    Public X, Y
    Private moves_
    Private Sub Class_Initialize
        X = 0 : Y = 0 : moves_ = 0
    End Sub
    Public Function Length()
        Length = Sqr(X * X + Y * Y)
    End Function
    Public Sub Move(ByVal byX, ByVal byY)
        X = X + byX
        Me.Y = Me.Y + byY
        CountMove
    End Sub
    Private Sub CountMove
        moves_ = moves_ + 1
    End Sub
    Public Property Get Moves
        Moves = moves_
    End Property
    Public Default Property Get Text(separator)
        Text = X & separator & Y
        separator = "changed" ' a literal stays what it is
    End Property
End Class
early.Move 1, 1
early.Move -2, 0
For i = 1 To 2 : x = early(";") : Next
Print early(";") & x & " " & early.Text("/") & " " & early.Moves

' Let and Set, with and without an index; a default that takes nothing
Class Shelf
    Private items_(3), owner_
    Public Property Get Item(i) : If IsObject(items_(i)) Then Set Item = items_(i) Else Item = items_(i)
    End Property
    Public Property Let Item(i, value) : items_(i) = "let " & value : End Property
    Public Property Set Item(i, ByVal value) : Set items_(i) = value : End Property
    Public Property Set Owner(value) : Set owner_ = value : End Property
    Public Property Get Owner : Set Owner = owner_ : End Property
    Public Default Property Get Name : Name = "shelf" : End Property
    Public Property Let Name(ByRef value) : value = value & "!" : items_(0) = value : End Property
    Sub Fill(first)
        Item(1) = first
        Set Item(2) = Me
        Name = "own"
        Set Owner = early
    End Sub
End Class
Set s = New Shelf
s.Item(0) = 5 : Set s.Item(3) = early
s.Fill "one"
given = "kept"
s.Name = given
Print s & " " & s.Item(0) & " " & s.Item(1) & " " & TypeName(s.Item(2)) & " " & s.Item(3).X & " " & s.Owner.Y & " " & given
x = s
Print TypeName(x) & " " & TypeName(s.Owner)
With New Shelf
    .Item(1) = "with"
    Print .Item(1) & " " & TypeName(.Item(2)) & " " & .Name
End With

' Public arrays; arguments by reference; objects in arrays; methods that call one another
Class Tree
    Public Kids(), Name, Count
    Public Function Add(ByVal label)
        Set Add = New Tree
        Add.Name = label
        ReDim Preserve Kids(Count)
        Set Kids(Count) = Add
        Count = Count + 1
    End Function
    Public Function Depth()
        Dim i, deepest
        deepest = 0
        For i = 0 To Count - 1
            If Kids(i).Depth > deepest Then deepest = Kids(i).Depth()
        Next
        Depth = deepest + 1
    End Function
    Public Function Factorial(n)
        If n <= 1 Then Factorial = 1 Else Factorial = n * Factorial(n - 1)
    End Function
    Public Sub Grow(n, list)
        n = n + 1 : list(0) = n : Count = Count + 0
    End Sub
    Public Sub GrowOwn : Grow Count, Array(0) : End Sub
End Class
Set root = New Tree
Set leaf = root.Add("a").Add("b")
root.Add "c"
Print root.Depth & root.Count & leaf.Name & root.Kids(0).Name & UBound(root.Kids) & " " & leaf.Factorial(10)
n = 1 : list = Array(0)
root.Grow n, list
root.Grow n, list
Print n & list(0) & " " & Join(Array(root.Kids(1).Name, TypeName(leaf.Kids)), ",")
leaf.GrowOwn
Print leaf.Count
Dim pair(1)
Set pair(0) = New Point : Set pair(1) = pair(0)
pair(1).X = 8
Print pair(0).X & (pair(0) Is pair(1)) & (pair(0) Is early)

' Beginning and end: at once, at the last release
Class Guest
    Public Name
    Sub Class_Initialize : Print "hello" : End Sub
    Sub Class_Terminate : Print "bye " & Name : End Sub
End Class
Set g = New Guest : g.Name = "first"
Set h = g
Set g = Nothing
Print "still"
h = 0
Print "gone"
Sub Visit
    Dim v
    Set v = New Guest
    v.Name = "local"
    Print "leaving"
End Sub
Visit
Print "left"
Set g = New Guest : g.Name = "old"
Set g = New Guest
Print "replaced" & g.Name
g.Name = "at the end"

' Exit Property, constants and names inside
Const kGlobal = "global"
Class Names
    Private value_
    Property Get Value
        Value = "early"
        If value_ = "" Then Exit Property
        Value = value_ & kGlobal
    End Property
    Property Let Value(v)
        Const kGlobal = "local"
        Dim early
        early = v & kGlobal
        value_ = early
    End Property
    Function Both : Both = Helper(Value, Names2) : End Function
    Private Function Names2 : Names2 = "2" : End Function
End Class
Function Helper(a, b) : Helper = a & "+" & b : End Function
Set k = New Names
Print k.Value
k.Value = "v"
Print k.Value & " " & k.Both

'> 5 Point True False
'> 2;52;5 2/5 2
'> shelf kept! let one Shelf 2 5 kept
'> String Point
'> let with Empty shelf
'> 32ba1 3628800
'> 33 c,Variant()
'> 1
'> 8TrueFalse
'> hello
'> still
'> bye first
'> gone
'> hello
'> leaving
'> bye local
'> left
'> hello
'> hello
'> bye old
'> replaced
'> early
'> vlocalglobal vlocalglobal+2
'> bye at the end
