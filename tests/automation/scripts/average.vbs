' A late-bound client: every argument form that a script has, errors and identity. Ends with 7 if all is well; the
' script host ends with 0 on an error that nobody handles.
Option Explicit

Dim failures
failures = 0

Sub Expect(what, got, wanted)
  If got <> wanted Then
    WScript.Echo "FAILED " & what & ": got " & got & ", expected " & wanted
    failures = failures + 1
  End If
End Sub

Sub ExpectError(what, number, source, description)
  Expect what & ", number", Err.Number, number
  Expect what & ", source", Err.Source, source
  Expect what & ", description", Err.Description, description
  Err.Clear
End Sub

Dim data, prices, source, average, result, name, periods, mean, row
Set data = CreateObject("Orvex.Database")
data.OpenDataBase WScript.Arguments(0), ","
Expect "records", data.getRecordCount(), 500
Set prices = data.getRecordset()
Set source = prices.getField("Close")
Expect "the same field twice", prices.getField("CLOSE") Is source, True
Expect "another field", prices.getField("Open") Is source, False

mean = 0
For row = 4 To 2 Step -1
  mean = mean + source.getValue(row)
Next
mean = mean / 3

Set average = CreateObject("Orvex.MovingAverage.1")
Set result = average.SimpleMovingAverage(data, source, 3)
Expect "left out", result.getValue("SimpleMovingAverage", 4), mean
Set result = average.SimpleMovingAverage(data, source, "3", "sma")
Expect "literals", result.getField("SMA").getValue(4), mean
name = ""
periods = 3.4
Set result = average.SimpleMovingAverage(data, source, periods, name)
Expect "written back", name, "SimpleMovingAverage"
Expect "type kept", TypeName(periods), "Double"
Expect "variables", result.getValue(name, 4), mean

' Many calls, each result let go of by the next.
Dim total
For row = 1 To 1000
  Set result = average.SimpleMovingAverage(data, source, row Mod 20 + 1)
  total = total + result.getValue("SimpleMovingAverage", 500) / source.getValue(500)
Next
Expect "a thousand calls", total > 900 And total < 1100, True

Dim second
Set second = CreateObject("Orvex.Database")
Set second.RecordsetCache = prices
Expect "adopted", second.getRecordCount(), 500
second.OpenDatabaseByArray Array(0, 1.5, "2.5", Empty)
Expect "loaded", second.getRecordset().getValue("High", 2), 2.5

On Error Resume Next
average.SimpleMovingAverage data, source, 501
ExpectError "too many periods", 1105, "MovingAverage.SimpleMovingAverage.UnexpectedError", _
    "An unexpected error has occured"
average.SimpleMovingAverage data, Nothing, 3
ExpectError "nothing", 1105, "MovingAverage.SimpleMovingAverage.UnexpectedError", "An unexpected error has occured"
average.SimpleMovingAverage data, source
Expect "one argument too few", Err.Number, 450
Err.Clear
average.SimplerMovingAverage data, source, 3
Expect "no such method", Err.Number, 438
Err.Clear

If failures = 0 Then WScript.Quit 7
WScript.Quit 1
