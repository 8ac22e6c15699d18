Option Explicit
Dim thing, other, x, name, s
Set thing = CreateObject("Test.Thing")

' The default member, with and without its argument.
thing("k") = 1
thing.Item("j") = 2
Print thing("k") + thing.Item("J")
'> 1
thing("") = "default"
Print thing
'> default
Print thing & "/" & Len(thing)
'> default/7
x = thing
Print TypeName(x)
'> String
Set x = thing
Print TypeName(x)
'> Thing
' An assignment without Set never writes the old object's default member.
x = 5
Print x & thing
'> 5default
If thing = "default" Then Print "equal"
'> equal

' Words of the language as names of members.
thing.Select = "select"
Print thing.Select & thing.select
'> selectselect

' Arguments for a property that takes none, through to what it returns.
Print thing.Names(2) & thing.Names("third") & thing.Names.Item(1)
'> secondthirdfirst
Print thing.Grid()(1, 0) & thing.Grid(0, 1)
'> 12

Set thing.Child = CreateObject("Test.Thing")
thing.Child.Caption = "child"
Print thing.Child.Caption
'> child
Set thing.Child("a") = Nothing
Print thing.Child("a") Is Nothing
'> True
For Each name In thing.Names
    s = s & name & ";"
Next
Print s
'> first;second;third;
For Each name In thing.Names
    For Each other In thing.Names
        If other = "second" Then Exit For
    Next
    If name = "second" Then Exit For
Next
Print name & other
'> secondsecond

' Objects go when nothing holds them any more.
Set thing.Child = Nothing
'> gone: child
Set other = CreateObject("Test.Thing")
other.Caption = "other"
Set other = Nothing
Print "released"
'> gone: other
'> released
Sub Local()
    Dim inside
    Set inside = CreateObject("Test.Thing")
    inside.Caption = "local"
End Sub
Local
'> gone: local
With CreateObject("Test.Thing")
    .Caption = "with"
End With
Print "behind"
'> gone: with
'> behind
Function Make(caption)
    Set Make = CreateObject("Test.Thing")
    Make.Caption = caption
End Function
Print Make("temporary").Caption
'> gone: temporary
'> temporary
' Nor does the value of an expression hold them beyond it.
Dim list(1), i
If Make("compared") = "x" Then Print "wrong"
x = Make("joined") & "y"
x = Make("left") + 1
x = Not Make("negated")
If Make("condition") Then Print "wrong"
Print "<" & list(Make("subscript")) & ">"
list(Make("stored at")) = 1
Grow list(Make("passed"))
For i = Make("from") To 0 : Next
Select Case Make("subject")
Case Make("test")
End Select
Print "last"
'> gone: compared
'> gone: joined
'> gone: left
'> gone: negated
'> gone: condition
'> gone: subscript
'> <>
'> gone: stored at
'> gone: passed
'> gone: from
'> gone: subject
'> gone: test
'> last
Sub Grow(n) : n = n + 1 : End Sub
Print list(0)
'> 2
Dim kept
Set kept = Make("kept")
Set kept = kept
Print kept.Caption
'> kept
kept = Empty
'> gone: kept
Print (thing Is thing) & (thing Is Nothing)
'> TrueFalse
