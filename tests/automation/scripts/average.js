// A late-bound client whose language passes all arguments by value and sets objects as it sets values. Ends with 7 if
// all is well; the script host ends with 0 on an error that nobody handles.
var failures = 0;

function expect(what, got, wanted) {
  if (got !== wanted) {
    WScript.Echo("FAILED " + what + ": got " + got + ", expected " + wanted);
    ++failures;
  }
}

var data = new ActiveXObject("Orvex.Database");
data.OpenDataBase(WScript.Arguments(0), ",");
var prices = data.getRecordset();
var source = prices.getField("Close");
var average = new ActiveXObject("Orvex.MovingAverage");

var mean = (source.getValue(4) + source.getValue(3) + source.getValue(2)) / 3;
var result = average.SimpleMovingAverage(data, source, 3);
expect("left out", result.getValue("SimpleMovingAverage", 4), mean);
expect("a fraction", average.SimpleMovingAverage(data, source, 2.5, "a").getValue("a", 3),
       (source.getValue(3) + source.getValue(2)) / 2);
expect("truth", result.isValidField("SIMPLEMOVINGAVERAGE"), true);

var second = new ActiveXObject("Orvex.Database");
second.RecordsetCache = prices;
expect("adopted", second.getRecordCount(), 500);

try {
  average.SimpleMovingAverage(data, null, 0);
  expect("an error", "none", "one");
} catch (error) {
  expect("number", error.number & 0xFFFF, 13);
}
try {
  average.SimpleMovingAverage(data, source, 0);
  expect("an error", "none", "one");
} catch (error) {
  expect("number", error.number & 0xFFFF, 1105);
  expect("description", error.description, "An unexpected error has occured");
}
WScript.Quit(failures == 0 ? 7 : 1);
