#include "asp/page.h"
#include "tests/asp/site_folder.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace tabrixdb::asp {
namespace {

std::string run(const SiteFolder& folder, const std::string& script) {
    folder.write("page.asp", "<% " + script + " %>");
    Site site(folder.path(), {}, [](std::string_view) {});
    Interrupt interrupt;
    return Page(site, std::make_shared<HttpRequest>(), "/page.asp", {}, interrupt).run().body;
}

// What each script writes.
TEST(Streams, HoldBytesAndText) {
    const std::string open = "Set s = Server.CreateObject(\"ADODB.Stream\") : s.Type = 1 : s.Open : ";
    const std::string text = "Set s = CreateObject(\"ADODB.Stream\") : s.Open : s.Charset = \"utf-8\" : ";
    const std::string file = "p = Server.MapPath(\"f.bin\") : ";
    const std::string show = "Sub W(x) : Response.Write x & \";\" : End Sub : ";

    const struct {
        std::string script;
        const char* expected;
    } cases[] = {
        // A text stream makes the bytes of the tests.
        {text +
             "s.WriteText \"a\xC3\xA9\xF0\x9F\x98\x80z\" : W s.Size : s.Position = 0 : W s.ReadText(2) : "
             "W s.ReadText(2) = ChrW(&HD83D) & ChrW(&HDE00) : W s.ReadText : W s.EOS : W s.ReadText = \"\"",
         "11;a\xC3\xA9;True;z;True;True;"},
        {text + "s.WriteText \"a\", 1 : s.WriteText \"b\" : s.Position = 0 : W s.ReadText(-2) : W "
                "s.ReadText(-2) : "
                "s.Position = 0 : s.SkipLine : W s.ReadText",
         "a;b;b;"},
        {"Set s = CreateObject(\"ADODB.Stream\") : s.Open : W s.Type : W s.Charset : s.WriteText "
         "\"h\xC3\xA9\" : "
         "W s.Size : s.Position = 0 : s.Type = 1 : b = s.Read : W VarType(b) : W LenB(b) : W AscB(MidB(b, 5, "
         "1)) : "
         "W IsNull(s.Read) : s.Position = 2 : s.SetEOS : W s.Size",
         "2;Unicode;6;8209;6;233;True;2;"},
        {text + "s.WriteText \"abc\" : s.Position = 0 : s.Type = 1 : Set t = CreateObject(\"ADODB.Stream\") "
                ": t.Type = 1 : "
                "t.Open : s.Position = 3 : s.CopyTo t, 2 : s.CopyTo t : W t.Size : s.CopyTo t : W t.Size : "
                "t.Position = 5 : "
                "W t.Size : t.Position = 0 : W AscB(t.Read(1)) : W LenB(t.Read(2)) : t.Position = 1 : "
                "s.Position = 4 : "
                "t.Write s.Read : W t.Size",
         "3;3;5;97;2;5;"},
        {file + text +
             "s.WriteText \"one\" : s.SaveToFile p : W s.Position : s.SetEOS : W s.Size : s.LoadFromFile p : "
             "W s.ReadText : s.SaveToFile p, 2",
         "0;0;one;"},
        // Errors: closed, wrong type, wrong place, wrong file, too many.
        {"On Error Resume Next : Set s = CreateObject(\"ADODB.Stream\") : s.Write 1 : W Err.Number And 4095 "
         ": Err.Clear : "
         "x = s.Size : W Err.Number And 4095",
         "3704;3704;"},
        {"On Error Resume Next : " + open +
             "s.WriteText \"a\" : W Err.Number And 4095 : Err.Clear : s.Write \"a\" : "
             "W Err.Number And 4095 : Err.Clear : s.Open : W Err.Number And 4095 : Err.Clear : s.Charset = "
             "\"none\" : "
             "W Err.Number And 4095 : Err.Clear : s.Position = -1 : W Err.Number And 4095 : Err.Clear : "
             "s.Position = 4 : s.Type = 2 : "
             "W Err.Number And 4095 : Err.Clear : s.CopyTo s : W Err.Number And 4095",
         "3219;3001;3705;3001;3001;3219;3001;"},
        {"On Error Resume Next : " + file + open +
             "s.LoadFromFile p : W Err.Number And 4095 : Err.Clear : "
             "s.SaveToFile p, 1 : W Err.Number : s.SaveToFile p, 1 : W Err.Number And 4095 : Err.Clear : "
             "s.SaveToFile Server.MapPath(\"none/f\") : W Err.Number And 4095 : Err.Clear : s.SaveToFile p, "
             "3 : W Err.Number And 4095",
         "3002;0;3004;3004;3001;"},
        {"On Error Resume Next : " + open +
             "s.Position = 2147483647 : W Err.Number : W s.Size : "
             "Dim many(9) : For i = 0 To 9 : Set many(i) = CreateObject(\"ADODB.Stream\") : many(i).Open : "
             "many(i).Position = 200000000 : Next : W Err.Number",
         "14;0;14;"},
    };

    for (const auto& c : cases) {
        const SiteFolder folder;
        EXPECT_EQ(run(folder, show + c.script), c.expected) << c.script;
    }
}

TEST(Folders, ListAndDeleteTheirFiles) {
    const SiteFolder folder;
    folder.write("Up/b.txt", "12345");
    folder.write("Up/a.x.txt", "");
    folder.write("Up/deep/c.txt", "");
    EXPECT_EQ(run(folder, R"(
Set fs = CreateObject("Scripting.FileSystemObject")
p = Server.MapPath("up")
Response.Write fs.FolderExists(p) & fs.FolderExists(p & "/none") & fs.FolderExists(p & "\b.txt") & fs.GetFolder(p).Files.Count & ";"
For Each f In fs.GetFolder(p).Files
    Response.Write f.Name & " " & f.Size & " " & TypeName(f) & " " & (Abs(DateDiff("s", f.DateLastModified, Now)) < 100) & ";"
Next
Set f = fs.GetFile(p & "\B.TXT")
Response.Write (f = f.Path) & fs.GetBaseName("\a.x.txt") & " " & (fs.GetParentFolderName(p & "\b.txt\") = p) & ";"
fs.DeleteFile p & "/a.x.txt"
f.Delete
Response.Write fs.GetFolder(p).Files.Count & fs.CreateFolder(p & "\new").Files.Count & fs.FolderExists(p & "/NEW") & ";"
On Error Resume Next
f.Delete : Response.Write Err.Number & ";" : Err.Clear
fs.DeleteFile p & "/deep" : Response.Write Err.Number & ";" : Err.Clear
fs.CreateFolder p & "/new" : Response.Write Err.Number & ";" : Err.Clear
fs.CreateFolder p & "/x/y" : Response.Write Err.Number & ";" : Err.Clear
fs.GetFolder p & "/x" : Response.Write Err.Number & ";" : Err.Clear
fs.GetFile p & "/deep" : Response.Write Err.Number & ";")"),
              "TrueFalseFalse2;a.x.txt 0 File True;b.txt 5 File True;Truea.x True;00True;53;53;58;76;76;53;");
}

} // namespace
} // namespace tabrixdb::asp
