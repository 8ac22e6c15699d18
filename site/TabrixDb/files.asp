<%
' What the pages that send files and take them know about files. For including.

' The content type of a picture that browsers show, by its first bytes; "" for everything else. Twelve bytes are enough.
Function PictureType(bytes)
    Dim signature, i
    For i = 1 To 12
        If i <= LenB(bytes) Then signature = signature & Right("0" & Hex(AscB(MidB(bytes, i, 1))), 2)
    Next
    PictureType = ""
    If Left(signature, 16) = "89504E470D0A1A0A" Then PictureType = "image/png"
    If Left(signature, 6) = "FFD8FF" Then PictureType = "image/jpeg"
    If Left(signature, 12) = "474946383761" Or Left(signature, 12) = "474946383961" Then PictureType = "image/gif"
    If Left(signature, 8) = "52494646" And Mid(signature, 17, 8) = "57454250" Then PictureType = "image/webp"
    If Left(signature, 4) = "424D" Then PictureType = "image/bmp"
End Function

' A text as the part of a file's name before the dot: letters, digits, "-" and "_", at most 60 of them.
Function SafeName(text)
    Dim pattern
    Set pattern = New RegExp
    pattern.Global = True
    pattern.IgnoreCase = True
    pattern.Pattern = "[^a-z0-9_]+"
    SafeName = pattern.Replace(text, "-")
    pattern.Pattern = "^-+|-+$"
    SafeName = pattern.Replace(Left(SafeName, 60), "")
    pattern.Pattern = "^(con|prn|aux|nul|com[0-9]|lpt[0-9])?$"  ' nothing, or the name of a device
    If pattern.Test(SafeName) Then SafeName = "file" & SafeName
End Function
%>
