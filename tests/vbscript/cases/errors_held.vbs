' On Error Resume Next, and where the run goes on.
Dim i, n, x, thing
On Error Resume Next

x = 1
x = 1 / 0
Print x & " " & Err.Number & " " & Err.Description & " " & Err.Source
'> 1 11 Division by zero TabrixDb VBScript runtime error
Print Err
'> 11
Err.Clear
Print Err.Number & "[" & Err.Description & "]"
'> 0[]

' A failing condition enters the block.
If 1 / 0 Then
    Print "entered"
Else
    Print "wrong"
End If
'> entered
If 1 / 0 Then
Else
    Print "wrong"
End If
If False Then
    Print "wrong"
ElseIf 1 / 0 Then
    Print "elseif entered"
End If
'> elseif entered
If 1 / 0 Then Print "line entered" Else Print "wrong"
'> line entered
n = 0
Do While 1 / 0
    n = n + 1
    If n = 2 Then Exit Do
Loop
Print n
'> 2
Do
    n = n + 1
Loop Until 1 / 0
Print n
'> 3

' Failing bounds: the body runs once, the variable is as it was.
i = "old" : Err.Clear
For i = 1 To 1 / 0
    Print "body " & i
Next
Print Err.Number & " " & i
'> body old
'> 92 old
Err.Clear
For Each i In 5
    Print "once"
Next
Print Err.Number
'> once
'> 92

' An error in a procedure without its own handler ends it; the run goes on behind the call.
Sub Fails()
    Print "before"
    x = CLng("many")
    Print "wrong"
End Sub
Err.Clear
Fails
Print Err.Number & " " & Err.Description
'> before
'> 13 Type mismatch: 'CLng'
n = "unchanged"
Function FailsToo() : FailsToo = 1 : Fails : End Function
n = FailsToo() & "x"
Print n
'> before
'> unchanged
Sub HoldsItself()
    On Error Resume Next
    x = 1 / 0
    Print "held " & Err.Number
    On Error GoTo 0
    x = 1 / 0
    Print "wrong"
End Sub
Err.Clear
HoldsItself
Print "outside " & Err.Number
'> held 11
'> outside 11

' Exit Sub clears Err, its end does not, nor does a statement that succeeds.
Sub Leaves() : x = 1 / 0 : Exit Sub : End Sub
Sub Ends() : On Error Resume Next : x = 1 / 0 : End Sub
Ends
Print Err.Number
'> 11
Sub Exits() : On Error Resume Next : x = 1 / 0 : Exit Sub : End Sub
Exits
Print Err.Number
'> 0

' Failing assignments leave their target.
Set thing = CreateObject("Test.Thing")
x = "kept"
Set x = 5
Print x & " " & Err.Description
'> kept Object required: '[number: 5]'
Set x = CreateObject("No.Such")
Print x & " " & Err.Number
'> kept 429
x = x & 1 / 0
Print x
'> kept
thing.NoSuch = 1
Print Err.Number & " " & Err.Description
'> 438 Object doesn't support this property or method: 'NoSuch'
thing.Fail
Print Err.Number & " " & Err.Description & " " & Err.Source
'> -2146825267 It failed Thing
thing.Break
Print Err.Number & " " & Err.Description
'> 51 Internal error
Err.Raise 1234, "me", "my error"
Print Err.Number & Err.Source & Err.Description
'> 1234memy error
Err.Raise 13
Print Err.Description
'> Type mismatch
Err.Raise 0
Print Err.Number
'> 5

' Select Case: a failing subject or test enters the block that follows.
Select Case 1 / 0
Case 1
    Print "case entered"
Case Else
    Print "wrong"
End Select
'> case entered

Err.Clear
With 42
    .Caption = 1
End With
Print Err.Number & " " & Err.Description
'> 424 Object required: ''
Err.Clear
With Nothing
End With
Print Err.Number
'> 0
x = Nothing
Print Err.Number
'> 91
Print "to the end"
'> to the end
