#include "cli/price_file.h"

#include <fmt/format.h>
#include <zlib.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string_view>

#include "cli/failure.h"
#include "cli/input_file.h"
#include "orvex/data/columns.h"
#include "orvex/prices/price_reader.h"

namespace orvex::cli {

namespace {

bool isGzip(std::string_view bytes) {
  return bytes.starts_with("\x1F\x8B");
}

/// The contents of one gzip file or of several, one behind the other.
std::string unpacked(const std::string& bytes) {
  const auto refuse = [] {
    throw prices::ReadError(Database::loadFault(faults::DeviceError.description),
                            "It is compressed with gzip and damaged or cut off.");
  };
  constexpr int gzipOnly = 16;
  z_stream stream{};
  if (inflateInit2(&stream, MAX_WBITS + gzipOnly) != Z_OK) raise(faults::OutOfMemory);
  const std::unique_ptr<z_stream, int (*)(z_stream*)> ended(&stream, inflateEnd);
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));  // zlib only reads it
  std::size_t left = bytes.size();
  std::string text;
  std::size_t size = 0;
  for (;;) {
    if (stream.avail_in == 0) {
      stream.avail_in = static_cast<uInt>(std::min<std::size_t>(left, std::numeric_limits<uInt>::max()));
      left -= stream.avail_in;
    }
    if (size == text.size()) text.resize(std::max<std::size_t>(8 * bytes.size(), 2 * size));
    const auto room = static_cast<uInt>(std::min<std::size_t>(text.size() - size, std::numeric_limits<uInt>::max()));
    stream.next_out = reinterpret_cast<Bytef*>(text.data() + size);
    stream.avail_out = room;
    const int state = inflate(&stream, Z_NO_FLUSH);
    size += room - stream.avail_out;
    if (state == Z_STREAM_END) {
      if (stream.avail_in == 0 && left == 0) break;
      if (inflateReset(&stream) != Z_OK) refuse();
    } else if (state != Z_OK) {
      refuse();
    }
  }
  text.resize(size);
  return text;
}

/// A column of the table, which is looked at where it stands.
std::shared_ptr<Field> fieldOf(const prices::PriceColumn& column,
                               const std::shared_ptr<const prices::PriceTable>& table) {
  if (column.isText()) {
    auto field = makeColumn(table->count, column.name);
    field->viewTexts({column.texts, table});
    return field;
  }
  auto field = std::make_shared<Field>();
  field->view({column.numbers, table}, column.name);
  return field;
}

PriceFile fileOf(const std::string& name, const std::shared_ptr<const prices::PriceTable>& table) {
  PriceFile file{
      name, {}, nullptr, table->times, std::make_shared<Database>(table->count), std::make_shared<RecordSet>(), {}};
  file.data->MoveFirst();
  for (const prices::PriceColumn& column : table->columns) {
    const auto field = fieldOf(column, table);
    file.columns.push_back({field, column.heading, {}});
    if (column.isText()) file.columns.back().textLine = column.textLine;
    if (column.role == prices::Role::Date) file.dates = field;
    if (column.hasValues()) file.prices->addField(field);
  }
  for (const std::string& remark : table->remarks) file.remarks.push_back(fmt::format("\"{}\": {}", name, remark));
  return file;
}

}  // namespace

std::vector<std::string> PriceFile::columnNames() const {
  std::vector<std::string> names;
  for (const FileColumn& column : columns) names.push_back(column.field->getName());
  return names;
}

PriceFile readPriceFile(const std::string& path, const prices::Options& options) {
  const std::string name = path == "-" ? "standard input" : path;
  try {
    std::string bytes = InputFile(path).bytes();
    if (isGzip(bytes)) bytes = unpacked(bytes);
    return fileOf(name, std::make_shared<prices::PriceTable>(prices::read(std::move(bytes), options)));
  } catch (const prices::ReadError& error) {
    throw Failure(error.fault(),
                  error.line() == 0 ? fmt::format("no prices could be read from \"{}\". {}", name, error.what())
                                    : fmt::format("line {} of \"{}\": {}", error.line(), name, error.what()),
                  error.line(), error.cell());
  } catch (const Error& error) {
    throw Failure(Database::loadFault(error.description()), fmt::format("no prices could be read from \"{}\".", name));
  }
}

}  // namespace orvex::cli
