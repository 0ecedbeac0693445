Attribute VB_Name = "BollingerBands"
' Bollinger bands of a price file, from a macro.
'
' 1. Register the DLL that has the bits of your Office: regsvr32 Orvex.dll, once, as an administrator.
' 2. In the editor for macros: File, Import File, this file; Tools, References, "Orvex Technical Analysis Library".
' 3. Run ShowBollingerBands. The table appears on a new sheet.
Option Explicit

Public Sub ShowBollingerBands()
    Dim file As Variant
    file = Application.GetOpenFilename("Prices (*.csv),*.csv")
    If VarType(file) = vbBoolean Then Exit Sub

    ' A Database holds a price series: date, open, high, low, close and volume, one record a line, oldest first,
    ' without a header line.
    Dim data As Orvex.Database
    Set data = New Orvex.Database
    On Error GoTo Failed
    data.OpenDataBase CStr(file), ","

    ' A RecordSet is a set of columns, each of them a Field.
    Dim prices As Orvex.RecordSet
    Set prices = data.getRecordset()
    Dim closes As Orvex.Field
    Set closes = prices.getField("Close")

    ' Indicators are methods of a few classes. Each takes the Database, the columns to compute from and its settings,
    ' and returns a RecordSet of new columns: here bands two standard deviations around a simple (1) average of 20
    ' records.
    Dim bands As Orvex.Bands
    Set bands = New Orvex.Bands
    Dim result As Orvex.RecordSet
    Set result = bands.BollingerBands(data, closes, 20, 2, 1)

    ' A whole column at once is much faster than its rows one by one. Rows count from 1, the oldest record; those that
    ' have too few records before them are 0.
    Dim sheet As Object
    Set sheet = Application.Workbooks.Add.Worksheets(1)
    ShowColumn sheet, 1, "Date", prices.getField("Date").getStringArray()
    ShowColumn sheet, 2, "Close", closes.getDoubleArray()
    ShowColumn sheet, 3, "Bottom", result.getField("BollingerBandsBottom").getDoubleArray()
    ShowColumn sheet, 4, "Median", result.getField("BollingerBandsMedian").getDoubleArray()
    ShowColumn sheet, 5, "Top", result.getField("BollingerBandsTop").getDoubleArray()
    Exit Sub

Failed:
    ' Err tells the number, the method that failed and a sentence.
    MsgBox "Error " & Err.Number & " in " & Err.Source & ": " & Err.Description
End Sub

Private Sub ShowColumn(sheet As Object, column As Long, title As String, values As Variant)
    Dim block() As Variant
    ReDim block(0 To UBound(values), 0 To 0)
    block(0, 0) = title
    Dim row As Long
    For row = 1 To UBound(values)
        block(row, 0) = values(row)
    Next
    sheet.Cells(1, column).Resize(UBound(values) + 1, 1).Value = block
End Sub
