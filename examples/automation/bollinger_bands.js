// Bollinger bands of a price file, from a script.
//
//   regsvr32 Orvex.dll                                once, as an administrator
//   cscript //nologo bollinger_bands.js prices.csv
//
// On 64-bit Windows use the programs in C:\Windows\SysWOW64 for the 32-bit DLL.
if (WScript.Arguments.length < 1) {
  WScript.Echo("usage: cscript //nologo bollinger_bands.js FILE");
  WScript.Quit(2);
}

// A Database holds a price series: date, open, high, low, close and volume, one record a line, oldest first, without a
// header line.
var data = new ActiveXObject("Orvex.Database");
try {
  data.OpenDataBase(WScript.Arguments(0), ",");
} catch (error) {
  // Errors carry the number of the library in their lower half, and a description.
  WScript.Echo("error " + (error.number & 0xFFFF) + ": " + error.description);
  WScript.Quit(1);
}

// A RecordSet is a set of columns, each of them a Field.
var prices = data.getRecordset();
var dates = prices.getField("Date");
var closes = prices.getField("Close");

// Indicators are methods of a few classes. Each takes the Database, the columns to compute from and its settings, and
// returns a RecordSet of new columns: here bands two standard deviations around a simple (1) average of 20 records.
var bands = new ActiveXObject("Orvex.Bands");
var result = bands.BollingerBands(data, closes, 20, 2, 1);
var bottom = result.getField("BollingerBandsBottom");
var median = result.getField("BollingerBandsMedian");
var top = result.getField("BollingerBandsTop");

// Rows count from 1, the oldest record. Those that have too few records before them are 0.
WScript.Echo("Date,Close,Bottom,Median,Top");
for (var row = 1; row <= data.getRecordCount(); ++row) {
  WScript.Echo([dates.getStrValue(row), closes.getValue(row), bottom.getValue(row), median.getValue(row),
                top.getValue(row)].join(","));
}
