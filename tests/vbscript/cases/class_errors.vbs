' What objects of a script's class refuse.
Class Part
    Public Open, List(2)
    Private hidden
    Private Sub Secret : End Sub
    Public Function TakesTwo(a, b) : TakesTwo = a : End Function
    Public Property Get ReadOnly : ReadOnly = 1 : End Property
    Public Property Let WriteOnly(v) : hidden = v : End Property
    Public Sub Fail : Err.Raise 1000, "part", "failed" : End Sub
    Public Sub Handles
        On Error Resume Next
        Fail
        Print "held " & Err.Number
    End Sub
    Public Sub ThroughMe : Me.Secret : End Sub
End Class
Class Bad
    Sub Class_Initialize : Err.Raise 7777, "", "no start" : End Sub
End Class

On Error Resume Next
Set p = New Part
Sub Check(label)
    Print label & ": " & Err.Number & " " & Err.Description
    Err.Clear
End Sub
x = p.hidden : Check "private variable"
p.Secret : Check "private method"
p.ThroughMe : Check "through Me"
p.Nobody : Check "unknown"
p.Nobody = 1 : Check "unknown, assigned"
x = p.TakesTwo(1) : Check "too few"
p.TakesTwo 1, 2, 3 : Check "too many"
p.ReadOnly = 5 : Check "read only"
x = p.WriteOnly : Check "write only"
Set p.WriteOnly = p : Check "Set where Let is"
x = p & "" : Check "no default"
p.Open(1) = 5 : Check "no array"
x = p.List(9) : Check "subscript"
p.List(1) = 5 : Print p.List(1) : Check "element"
p.Fail : Check "raised"
p.Handles : Check "handled"
Set b = New Bad : Check "initialize"
Print TypeName(b)
Set b = New Nobody : Check "no class"
For Each x In p : Next : Check "each"
Part = 1 : Check "class name"

'> private variable: 438 Object doesn't support this property or method: 'hidden'
'> private method: 438 Object doesn't support this property or method: 'Secret'
'> through Me: 438 Object doesn't support this property or method: 'Secret'
'> unknown: 438 Object doesn't support this property or method: 'Nobody'
'> unknown, assigned: 438 Object doesn't support this property or method: 'Nobody'
'> too few: 450 Wrong number of arguments or invalid property assignment: 'TakesTwo'
'> too many: 450 Wrong number of arguments or invalid property assignment: 'TakesTwo'
'> read only: 438 Object doesn't support this property or method: 'ReadOnly'
'> write only: 438 Object doesn't support this property or method: 'WriteOnly'
'> Set where Let is: 438 Object doesn't support this property or method: 'WriteOnly'
'> no default: 438 Object doesn't support this property or method
'> no array: 450 Wrong number of arguments or invalid property assignment: 'Open'
'> subscript: 9 Subscript out of range
'> 5
'> element: 0 
'> raised: 1000 failed
'> held 1000
'> handled: 1000 failed
'> initialize: 7777 no start
'> Empty
'> no class: 506 Class not defined: 'Nobody'
'> each: 92 For loop not initialized
'> class name: 501 Illegal assignment: 'Part'
