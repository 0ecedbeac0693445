' Bollinger bands of a price file, from a script.
'
'   regsvr32 Orvex.dll                                 once, as an administrator
'   cscript //nologo bollinger_bands.vbs prices.csv
'
' On 64-bit Windows use the programs in C:\Windows\SysWOW64 for the 32-bit DLL.
Option Explicit

If WScript.Arguments.Count < 1 Then
  WScript.Echo "usage: cscript //nologo bollinger_bands.vbs FILE"
  WScript.Quit 2
End If

' A Database holds a price series: date, open, high, low, close and volume, one record a line, oldest first, without a
' header line.
Dim data
Set data = CreateObject("Orvex.Database")
data.OpenDataBase WScript.Arguments(0), ","

' A RecordSet is a set of columns, each of them a Field.
Dim prices, closes
Set prices = data.getRecordset()
Set closes = prices.getField("Close")

' Indicators are methods of a few classes. Each takes the Database, the columns to compute from and its settings, and
' returns a RecordSet of new columns: here bands two standard deviations around a simple (1) average of 20 records.
Dim bands, result
Set bands = CreateObject("Orvex.Bands")
Set result = bands.BollingerBands(data, closes, 20, 2, 1)

' Rows count from 1, the oldest record. Those that have too few records before them are 0.
Dim row
WScript.Echo "Date,Close,Bottom,Median,Top"
For row = 1 To data.getRecordCount()
  WScript.Echo prices.getField("Date").getStrValue(row) & "," & closes.getValue(row) & "," & _
      result.getValue("BollingerBandsBottom", row) & "," & result.getValue("BollingerBandsMedian", row) & "," & _
      result.getValue("BollingerBandsTop", row)
Next
