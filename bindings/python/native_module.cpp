// norvik50._native: the Python package's bridge to the C interface. It
// calls members by name and raises norvik50.Error, converting values with
// py_values; everything a member does happens behind the C interface. The
// Python classes it converts to are registered by the package at import
// (bind), so they stay plain Python.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <memory>
#include <string>
#include <vector>

#include "norvik50/norvik50.h"
#include "py_values.h"

namespace norvik50py {
namespace {

// ---- The library object
//
// A capsule owns the library object; the package's LIB holds it. Calls go
// through `call`, a plain CPython function taking its arguments as they
// lie on the interpreter's stack: the binding's whole overhead is paid on
// every call, so it avoids pybind11's argument dispatch and every
// allocation a call with few arguments does not need.

constexpr const char* kLibCapsule = "norvik50.lib";

struct LibBox {
  norvik50_lib* lib = nullptr;
};

void FreeBox(PyObject* capsule) {
  auto* box = static_cast<LibBox*>(PyCapsule_GetPointer(capsule, kLibCapsule));
  if (box == nullptr) return;
  if (box->lib != nullptr) norvik50_lib_free(box->lib);
  delete box;
}

py::object NewLib() {
  auto box = std::make_unique<LibBox>();
  norvik50_error err = NORVIK50_ERROR_INIT;
  if (norvik50_lib_new(&box->lib, &err) != 0) RaiseError(err);
  PyObject* capsule = PyCapsule_New(box.get(), kLibCapsule, &FreeBox);
  if (capsule == nullptr) {
    norvik50_lib_free(box->lib);
    throw py::error_already_set();
  }
  box.release();
  return py::reinterpret_steal<py::object>(capsule);
}

LibBox& Box(PyObject* capsule) {
  auto* box = static_cast<LibBox*>(PyCapsule_GetPointer(capsule, kLibCapsule));
  if (box == nullptr) throw py::error_already_set();
  return *box;
}

void CloseLib(py::handle capsule) {
  LibBox& box = Box(capsule.ptr());
  if (box.lib != nullptr) norvik50_lib_free(box.lib);
  box.lib = nullptr;  // a later call is refused by the library (91)
}

// Arguments of a call: on the stack up to kInline, which every member fits.
class CallSlots {
 public:
  static constexpr size_t kInline = 16;
  explicit CallSlots(size_t n) : n_(n) {
    if (n > kInline) {
      heap_owned_.resize(n);
      heap_slots_.resize(n, nullptr);
    }
  }
  Value& owned(size_t i) { return n_ > kInline ? heap_owned_[i] : owned_[i]; }
  norvik50_value** slots() { return n_ > kInline ? heap_slots_.data() : slots_; }

 private:
  size_t n_;
  Value owned_[kInline];
  norvik50_value* slots_[kInline] = {};
  std::vector<Value> heap_owned_;
  std::vector<norvik50_value*> heap_slots_;
};

PyObject* Call(norvik50_lib* lib, const char* name, int32_t how, PyObject* const* args,
               size_t argc) {
  CallSlots call(argc);
  norvik50_value** slots = call.slots();
  bool any_ref = false;
  Types& t = T();
  const auto* ref_type = reinterpret_cast<PyTypeObject*>(t.ref.ptr());
  for (size_t i = 0; i < argc; ++i) {
    py::handle arg = args[i];
    if (arg.is(t.missing)) continue;
    if (Py_TYPE(arg.ptr()) == ref_type) {
      any_ref = true;
      arg = arg.attr("value");
      if (arg.is(t.missing)) continue;
    }
    call.owned(i) = ToValue(arg);
    slots[i] = call.owned(i).get();
  }
  norvik50_value* result = nullptr;
  norvik50_error err = NORVIK50_ERROR_INIT;
  if (norvik50_invoke(lib, name, how, slots, argc, &result, &err) != 0) RaiseError(err);
  Value result_owned(result);
  for (size_t i = 0; i < argc; ++i) {
    if (slots[i] != call.owned(i).get()) call.owned(i).reset(slots[i]);  // filled in for us
  }
  if (any_ref) {
    // Each Ref holds the argument as the member left it.
    for (size_t i = 0; i < argc; ++i) {
      if (Py_TYPE(args[i]) == ref_type && slots[i] != nullptr) {
        py::handle(args[i]).attr("value") = FromValue(slots[i]);
      }
    }
  }
  return (result ? FromValue(result) : py::none()).release().ptr();
}

// call(lib, name, how, *args, **kwargs): the member's result; raises
// norvik50.Error. Keyword arguments are put in place by the package.
PyObject* CallEntry(PyObject*, PyObject* const* argv, Py_ssize_t nargsf, PyObject* kwnames) {
  try {
    const Py_ssize_t nargs = PyVectorcall_NARGS(nargsf);
    if (nargs < 3) {
      PyErr_SetString(PyExc_TypeError, "call(lib, name, how, *args, **kwargs)");
      return nullptr;
    }
    const char* name = PyUnicode_AsUTF8(argv[1]);
    if (name == nullptr) return nullptr;
    const long how = PyLong_AsLong(argv[2]);
    if (how == -1 && PyErr_Occurred()) return nullptr;
    norvik50_lib* lib = Box(argv[0]).lib;
    if (kwnames == nullptr || PyTuple_GET_SIZE(kwnames) == 0) {
      return Call(lib, name, static_cast<int32_t>(how), argv + 3, static_cast<size_t>(nargs - 3));
    }
    py::tuple positional(nargs - 3);
    for (Py_ssize_t i = 3; i < nargs; ++i) positional[i - 3] = py::handle(argv[i]);
    py::dict keywords;
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(kwnames); ++i) {
      keywords[py::handle(PyTuple_GET_ITEM(kwnames, i))] = py::handle(argv[nargs + i]);
    }
    py::tuple placed = T().place(py::handle(argv[1]), py::handle(argv[2]), positional, keywords);
    return Call(lib, name, static_cast<int32_t>(how), &PyTuple_GET_ITEM(placed.ptr(), 0),
                static_cast<size_t>(PyTuple_GET_SIZE(placed.ptr())));
  } catch (py::error_already_set& e) {
    e.restore();
  } catch (py::builtin_exception& e) {
    e.set_error();
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& e) {
    PyErr_SetString(PyExc_RuntimeError, e.what());
  }
  return nullptr;
}

PyMethodDef kCallDef = {
    "call", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&CallEntry)),
    METH_FASTCALL | METH_KEYWORDS, "call(lib, name, how, *args, **kwargs): calls a member by name"};

py::list MemberTable() {
  py::list table;
  const size_t count = norvik50_member_count();
  for (size_t m = 0; m < count; ++m) {
    norvik50_member info{};
    Check(norvik50_member_get(m, &info), "Subscript out of range");
    py::list params;
    for (size_t p = 0; p < info.param_count; ++p) {
      norvik50_param param{};
      Check(norvik50_member_param(m, p, &param), "Subscript out of range");
      py::dict entry;
      entry["name"] = param.name;
      entry["type"] = param.type;
      entry["by_ref"] = param.by_ref != 0;
      entry["optional"] = param.optional != 0;
      entry["has_default"] = param.default_value != nullptr;
      entry["default"] = param.default_value ? FromValue(param.default_value) : py::none();
      entry["record_type"] = param.record_type;
      params.append(entry);
    }
    py::dict entry;
    entry["name"] = info.name;
    entry["how"] = info.how;
    entry["result_type"] = info.result_type;
    entry["designed_here"] = info.designed_here != 0;
    entry["params"] = params;
    table.append(entry);
  }
  return table;
}

}  // namespace
}  // namespace norvik50py

using namespace norvik50py;

PYBIND11_MODULE(_native, m) {
  m.doc() = "The C interface of norvik50, for the norvik50 package";
  m.def("version", [] { return std::string(norvik50_version()); });
  m.def("bind", [](py::kwargs types) {
    Types& t = T();
    t.error = types["Error"];
    t.empty = types["Empty"];
    t.nothing = types["Nothing"];
    t.ref = types["Ref"];
    t.array = types["Array"];
    t.record = types["Record"];
    t.error_value = types["ErrorValue"];
    t.variant = types["Variant"];
    t.host_object = types["HostObject"];
    t.missing = types["Missing"];
    t.place = types["Place"];
    t.decimal = py::module_::import("decimal").attr("Decimal");
    py::module_ datetime = py::module_::import("datetime");
    t.datetime = datetime.attr("datetime");
    t.date = datetime.attr("date");
  });
  m.def("members", &MemberTable);
  m.def("set_dialogs", [](int32_t which) {
    norvik50_error err = NORVIK50_ERROR_INIT;
    if (norvik50_set_dialogs(which, &err) != 0) RaiseError(err);
  });
  m.def("set_host_application", [](const std::string& name, const std::string& title) {
    Check(norvik50_set_host_application(name.c_str(), title.c_str()),
          "Invalid procedure call or argument");
  });
  m.def("new_collection", [] { return ObjectHandle(Own(norvik50_value_new_collection())); });
  py::class_<ObjectHandle>(m, "ObjectHandle")
      .def("id", &ObjectHandle::id)
      .def("count", &ObjectHandle::count)
      .def("add", &ObjectHandle::add)
      .def("item", &ObjectHandle::item);
  m.def("new_lib", &NewLib);
  m.def("close_lib", &CloseLib);
  m.add_object("call", py::reinterpret_steal<py::object>(PyCFunction_New(&kCallDef, nullptr)));
}
