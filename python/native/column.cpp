#include "native/column.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "native/numpy.h"

namespace orvex::python {

namespace {

/// The structures of the Arrow C data interface, as Arrow publishes them.
struct ArrowSchema {
  const char* format;
  const char* name;
  const char* metadata;
  std::int64_t flags;
  std::int64_t childCount;
  ArrowSchema** children;
  ArrowSchema* dictionary;
  void (*release)(ArrowSchema*);
  void* privateData;
};

struct ArrowArray {
  std::int64_t length;
  std::int64_t nullCount;
  std::int64_t offset;
  std::int64_t bufferCount;
  std::int64_t childCount;
  const void** buffers;
  ArrowArray** children;
  ArrowArray* dictionary;
  void (*release)(ArrowArray*);
  void* privateData;
};

constexpr std::int64_t ArrowNullable = 2;

struct ColumnObject {
  PyObject_HEAD ResultColumn column;
  std::string name;
};

/// Copying so many rows into an array that owns them costs less than an object that keeps the library's for it.
constexpr std::size_t CopiedRows = 512;

PyTypeObject* columnType = nullptr;

ResultColumn& columnOf(PyObject* self) {
  return reinterpret_cast<ColumnObject*>(self)->column;
}

std::string& titleOf(PyObject* self) {
  return reinterpret_cast<ColumnObject*>(self)->name;
}

void freeColumn(PyObject* self) {
  PyTypeObject* type = Py_TYPE(self);
  columnOf(self).~ResultColumn();
  std::destroy_at(&titleOf(self));
  type->tp_free(self);
  Py_DECREF(type);
}

/// An array that views the rows of a column, of which it takes over the reference.
PyObject* arrayOf(PyObject* column) {
  if (column == nullptr) return nullptr;
  const std::span<double> rows = columnOf(column).rows.values;
  auto length = static_cast<npy_intp>(rows.size());
  PyObject* array = PyArray_SimpleNewFromData(1, &length, NPY_DOUBLE, rows.data());
  if (array == nullptr) {
    Py_DECREF(column);
    return nullptr;
  }
  // Takes the reference over, on failure too.
  if (PyArray_SetBaseObject(reinterpret_cast<PyArrayObject*>(array), column) != 0) {
    Py_DECREF(array);
    return nullptr;
  }
  return array;
}

PyObject* numpy(PyObject* self, PyObject*) {
  return arrayOf(Py_NewRef(self));
}

/// What an exported array needs for as long as somebody holds it. No reference to an object of Python: consumers let go
/// of it on any thread.
struct Exported {
  std::shared_ptr<void> rows;
  std::unique_ptr<std::uint8_t[]> validity;
  std::array<const void*, 2> buffers{};
};

void releaseArray(ArrowArray* array) {
  delete static_cast<Exported*>(array->privateData);
  array->release = nullptr;
}

void releaseSchema(ArrowSchema* schema) {
  delete[] schema->name;
  schema->release = nullptr;
}

/// One bit a row, set where first <= row <= last.
std::unique_ptr<std::uint8_t[]> validityBits(std::size_t count, std::size_t first, std::size_t last) {
  auto bits = std::make_unique<std::uint8_t[]>(count / 8 + 1);
  for (std::size_t row = first; row < last; ++row) bits[row / 8] |= static_cast<std::uint8_t>(1u << row % 8);
  return bits;
}

ArrowArray exportRows(const ResultColumn& column) {
  const std::size_t count = column.rows.values.size();
  std::size_t first = 0;
  std::size_t last = count;
  if (!column.keptWarmUp) {
    first = static_cast<std::size_t>(std::max(1, column.computed.first) - 1);
    last = std::min(count, static_cast<std::size_t>(std::max(0, column.computed.last)));
  }
  const std::size_t valued = first < last ? last - first : 0;
  auto exported = std::make_unique<Exported>();
  exported->rows = column.rows.owner;
  if (valued < count) exported->validity = validityBits(count, first, last);
  exported->buffers = {exported->validity.get(), column.rows.values.data()};
  ArrowArray array{};
  array.length = static_cast<std::int64_t>(count);
  array.nullCount = static_cast<std::int64_t>(count - valued);
  array.bufferCount = 2;
  array.buffers = exported->buffers.data();
  array.release = &releaseArray;
  array.privateData = exported.release();
  return array;
}

ArrowSchema exportType(const std::string& title) {
  ArrowSchema schema{};
  auto* name = new char[title.size() + 1];
  title.copy(name, title.size());
  name[title.size()] = '\0';
  schema.format = "g";
  schema.name = name;
  schema.flags = ArrowNullable;
  schema.release = &releaseSchema;
  return schema;
}

/// A capsule of the interface. Whoever takes the structure out of it empties it; otherwise the capsule does.
template <class Structure>
PyObject* capsuleOf(Structure structure, const char* name) {
  auto* held = new Structure(structure);
  PyObject* capsule = PyCapsule_New(held, name, [](PyObject* self) {
    auto* left = static_cast<Structure*>(PyCapsule_GetPointer(self, PyCapsule_GetName(self)));
    if (left->release != nullptr) left->release(left);
    delete left;
  });
  if (capsule == nullptr) {
    held->release(held);
    delete held;
  }
  return capsule;
}

PyObject* arrow(PyObject* self, PyObject*, PyObject*) {
  PyObject* schema = capsuleOf(exportType(titleOf(self)), "arrow_schema");
  if (schema == nullptr) return nullptr;
  PyObject* array = capsuleOf(exportRows(columnOf(self)), "arrow_array");
  if (array == nullptr) {
    Py_DECREF(schema);
    return nullptr;
  }
  return Py_BuildValue("(NN)", schema, array);
}

PyObject* nameOf(PyObject* self, void*) {
  const std::string& name = titleOf(self);
  return PyUnicode_DecodeUTF8(name.data(), static_cast<Py_ssize_t>(name.size()), "replace");
}

PyObject* firstOf(PyObject* self, void*) {
  return PyLong_FromLong(columnOf(self).computed.first);
}

PyObject* lastOf(PyObject* self, void*) {
  return PyLong_FromLong(columnOf(self).computed.last);
}

PyMethodDef columnMethods[] = {
    {"numpy", &numpy, METH_NOARGS, "The rows as an array, without a copy."},
    {"__arrow_c_array__", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&arrow)),
     METH_VARARGS | METH_KEYWORDS, "The rows in the Arrow C data interface, without a copy."},
    {},
};

PyGetSetDef columnAttributes[] = {
    {"name", &nameOf, nullptr, "The name of the column.", nullptr},
    {"first", &firstOf, nullptr, "The first computed record, from 1.", nullptr},
    {"last", &lastOf, nullptr, "The last computed record; below `first` where there is none.", nullptr},
    {},
};

}  // namespace

int addColumnType(PyObject* module) {
  PyType_Slot slots[] = {
      {Py_tp_doc, const_cast<char*>("The rows of a result.")},
      {Py_tp_dealloc, reinterpret_cast<void*>(&freeColumn)},
      {Py_tp_methods, columnMethods},
      {Py_tp_getset, columnAttributes},
      {},
  };
  PyType_Spec spec{"orvex._native.Column", sizeof(ColumnObject), 0,
                   Py_TPFLAGS_DEFAULT | Py_TPFLAGS_IMMUTABLETYPE | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
  columnType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
  return columnType == nullptr ? -1 : PyModule_AddType(module, columnType);
}

PyObject* newColumn(std::string name, ResultColumn column) {
  PyObject* self = columnType->tp_alloc(columnType, 0);
  if (self == nullptr) return nullptr;
  new (&columnOf(self)) ResultColumn(std::move(column));
  new (&titleOf(self)) std::string(std::move(name));
  return self;
}

PyObject* newArray(ResultColumn column) {
  const std::span<const double> rows = column.rows.values;
  if (rows.size() > CopiedRows) return arrayOf(newColumn({}, std::move(column)));
  auto length = static_cast<npy_intp>(rows.size());
  PyObject* array = PyArray_SimpleNew(1, &length, NPY_DOUBLE);
  if (array != nullptr) {
    std::ranges::copy(rows, static_cast<double*>(PyArray_DATA(reinterpret_cast<PyArrayObject*>(array))));
  }
  return array;
}

}  // namespace orvex::python
