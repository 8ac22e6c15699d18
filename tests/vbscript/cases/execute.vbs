' Code that comes as text.
Execute "a = 1 : b = a + 1"
Print a & b
Execute "Function Twice(n)" & vbCrLf & "Twice = n * 2" & vbCrLf & "End Function"
Print Twice(4) & Eval("Twice(b)")
Execute "Function Twice(n) : Twice = n & n : End Function"
Print Twice(4)

' In a procedure: its own variables, and new ones for it alone
Sub Work(given)
    Dim own
    own = 1
    Execute "own = own + given : fresh = own * 2 : Dim declared : declared = 7 : Const kLocal = 8"
    Print own & " " & fresh & " " & Eval("fresh + declared + kLocal")
    Execute "given = ""changed"" : Execute ""own = Eval(""""given & own"""")"""
    Print own
    ExecuteGlobal "fromInside = 5 : Dim own : own = ""global"""
    Print own & fromInside
    Execute "Function Inner : Inner = own & a : End Function : Print Inner()"
End Sub
x = 41
Work x
Print x & own & IsEmpty(declared) & IsEmpty(fresh) & Inner()
For i = 1 To 3 : Execute "total = total + " & i : Next
Print total

' In a method
Class Counter
    Public Count
    Private Sub Add(n) : Count = Count + n : End Sub
    Public Sub Run(code) : Execute code : End Sub
    Public Function Ask(code) : Ask = Eval(code) : End Function
    Public Property Get Doubled : Doubled = Count * 2 : End Property
End Class
Set c = New Counter
c.Run "Count = 5 : Add 2 : Me.Count = Me.Count + 1 : code = Doubled"
Print c.Count & c.Ask("TypeName(Me) & Doubled & code")
Execute "Class Late" & vbCrLf & "Public Default Function Hello : Hello = ""hello"" : End Function" & vbCrLf & "End Class"
Set l = New Late
Print l

' GetRef: a procedure to hand on
Function Add2(p, ByVal q) : Add2 = p + q : p = "seen" : End Function
Sub Say(text) : Print "says " & text : End Sub
Function Apply(f, n) : Apply = f(n, 1) : End Function
Set f = GetRef("add2")
n = 1
Print f(n, 2) & n & Apply(f, 5) & IsObject(f)
Set g = f
Set f = GetRef("Say")
f "direct" : Call f("called")
Function Nothing2 : Nothing2 = "default" : End Function
Set f = GetRef("Nothing2")
Print f & " " & (f = "default")
Dim table(1)
Set table(0) = GetRef("Add2")
Print table(0)(3, 4)

' What fails is the statement's error
On Error Resume Next
Execute "x = " : Print Err.Number & " " & Err.Description : Err.Clear
Execute "y = 1 / 0 : Print ""not here""" : Print Err.Number : Err.Clear
Execute 5 : Print Err.Number & " " & Err.Description : Err.Clear
Set f = GetRef("Nobody") : Print Err.Number & " " & Err.Description : Err.Clear
g 1 : Print Err.Number : Err.Clear
Execute "Sub : " : Print Err.Number : Err.Clear
Execute "Exit Sub" : Print Err.Number : Err.Clear
Execute "Me.x = 1" : Print Err.Number & Err.Description : Err.Clear
Execute "On Error Resume Next : z = 1 / 0 : Print ""held""" : Print Err.Number

'> 12
'> 84
'> 44
'> 42 84 99
'> changed42
'> changed425
'> global1
'> changedglobalTrueTrueglobal1
'> 6
'> 8Counter16TypeName(Me) & Doubled & code
'> hello
'> 3seen6True
'> says direct
'> says called
'> default True
'> 7
'> 1023 Expected expression
'> 11
'> 13 Type mismatch: 'Execute'
'> 5 Invalid procedure call or argument: 'Nobody'
'> 450
'> 1010
'> 1039
'> 424Object required: 'Me'
'> held
'> 11
