<%
' What the pages that send files and take them know about files. For including.

Const kSignatureBytes = 18  ' so many are enough for PictureType

' The content type of a picture that browsers show, by its first bytes; "" for everything else.
Function PictureType(bytes)
    Dim signature, i
    For i = 1 To kSignatureBytes
        If i <= LenB(bytes) Then signature = signature & Right("0" & Hex(AscB(MidB(bytes, i, 1))), 2)
    Next
    PictureType = ""
    If Left(signature, 16) = "89504E470D0A1A0A" Then PictureType = "image/png"
    If Left(signature, 6) = "FFD8FF" Then PictureType = "image/jpeg"
    If Left(signature, 12) = "474946383761" Or Left(signature, 12) = "474946383961" Then PictureType = "image/gif"
    If Left(signature, 8) = "52494646" And Mid(signature, 17, 8) = "57454250" Then PictureType = "image/webp"
    ' Texts may begin with "BM", too: four bytes that are zero follow, and the size of one of the known headers.
    If Left(signature, 4) = "424D" And Mid(signature, 13, 8) = "00000000" And Mid(signature, 31, 6) = "000000" Then
        If InStr(" 0C 28 34 38 40 6C 7C ", " " & Mid(signature, 29, 2) & " ") > 0 Then PictureType = "image/bmp"
    End If
End Function

' A text as the part of a file's name before the dot: letters, digits, "-" and "_", at most 60 of them.
Function SafeName(text)
    Dim pattern
    Set pattern = New RegExp
    pattern.Global = True
    pattern.Pattern = "[^A-Za-z0-9_]+"  ' without IgnoreCase, for which some letters beyond ASCII are an s or a k
    SafeName = pattern.Replace(text, "-")
    pattern.Pattern = "^-+|-+$"
    SafeName = pattern.Replace(Left(SafeName, 60), "")
    pattern.Pattern = "^(con|prn|aux|nul|com[0-9]|lpt[0-9])?$"  ' nothing, or the name of a device
    If pattern.Test(LCase(SafeName)) Then SafeName = "file" & SafeName
End Function
%>
