// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
// The interpreter's functions and objects by name. Included by the sources of this folder only.
#include "engine/bridge/py_reference.h"

#include <atomic>
#include <cstddef>
#include <mutex>

namespace veltro::capi {

/// Where one name of the library is; looked up once, on first use. Any thread.
class Symbol {
public:
    /// The legacy name is the one that a library of before version 3 has in its place.
    constexpr explicit Symbol(const char *name, const char *legacyName = nullptr)
        : m_name(name), m_legacyName(legacyName)
    {}

    /// Null when the library lacks it.
    [[nodiscard]] void *find();
    /// A library that lacks it stops the process.
    [[nodiscard]] void *require();

private:
    const char *const m_name;
    const char *const m_legacyName;
    std::once_flag m_once;
    std::atomic<void *> m_address = nullptr;
};

template <typename Signature>
class EntryPoint;

template <typename Result, typename... Parameters>
class EntryPoint<Result(Parameters...)> : public Symbol {
public:
    using Symbol::Symbol;
    Result operator()(Parameters... arguments)
    {
        return reinterpret_cast<Result (*)(Parameters...)>(require())(arguments...);
    }
};

/// An object that the library exports itself.
class ObjectSymbol : public Symbol {
public:
    using Symbol::Symbol;
    [[nodiscard]] PyObjectStruct *address() { return static_cast<PyObjectStruct *>(require()); }
};

/// A variable of the library that points to an object.
class ObjectVariable : public Symbol {
public:
    using Symbol::Symbol;
    [[nodiscard]] PyObjectStruct *value() { return *static_cast<PyObjectStruct **>(require()); }
};

/// How a built-in function is described to PyCFunction_NewEx.
struct MethodRecord {
    const char *name;
    void *function;
    int flags;
    const char *documentation;
};

using Object = PyObjectStruct *;
using Size = std::ptrdiff_t;

// life
inline constinit EntryPoint<void()> Py_Initialize{"Py_Initialize"};
inline constinit EntryPoint<const char *()> Py_GetVersion{"Py_GetVersion"};
inline constinit EntryPoint<int(const char *)> PyRun_SimpleString{"PyRun_SimpleString"};
inline constinit EntryPoint<Object(const char *)> PyImport_ImportModule{"PyImport_ImportModule"};
inline constinit EntryPoint<Object()> PyEval_GetBuiltins{"PyEval_GetBuiltins"};
/// Takes a text that must stay where it is. Deprecated, and absent from some later version on.
inline constinit Symbol Py_SetProgramName{"Py_SetProgramName"};
/// An int: whether texts of the system are UTF-8 whatever the locale says.
inline constinit Symbol Py_UTF8Mode{"Py_UTF8Mode"};

// counts
inline constinit EntryPoint<void(Object)> Py_IncRef{"Py_IncRef"};
inline constinit EntryPoint<void(Object)> Py_DecRef{"Py_DecRef"};

// errors
inline constinit EntryPoint<void(Object, Object)> PyErr_SetObject{"PyErr_SetObject"};
inline constinit EntryPoint<Object()> PyErr_Occurred{"PyErr_Occurred"};
inline constinit EntryPoint<void()> PyErr_Clear{"PyErr_Clear"};
inline constinit EntryPoint<void(Object *, Object *, Object *)> PyErr_Fetch{"PyErr_Fetch"};
inline constinit EntryPoint<void(Object *, Object *, Object *)> PyErr_NormalizeException{
    "PyErr_NormalizeException"};
inline constinit EntryPoint<int(Object, Object)> PyException_SetTraceback{
    "PyException_SetTraceback"};
inline constinit ObjectVariable PyExc_BaseException{"PyExc_BaseException"};
inline constinit ObjectVariable PyExc_Exception{"PyExc_Exception"};

// any object
inline constinit EntryPoint<Object(Object)> PyObject_Type{"PyObject_Type"};
inline constinit EntryPoint<Object(Object)> PyObject_Str{"PyObject_Str"};
inline constinit EntryPoint<int(Object, Object)> PyObject_IsInstance{"PyObject_IsInstance"};
inline constinit EntryPoint<Object(Object, const char *)> PyObject_GetAttrString{
    "PyObject_GetAttrString"};
inline constinit EntryPoint<int(Object, const char *, Object)> PyObject_SetAttrString{
    "PyObject_SetAttrString"};
inline constinit EntryPoint<Object(Object, Object)> PyObject_GetItem{"PyObject_GetItem"};
inline constinit EntryPoint<int(Object, Object, Object)> PyObject_SetItem{"PyObject_SetItem"};
inline constinit EntryPoint<int(Object, Object)> PyObject_DelItem{"PyObject_DelItem"};
inline constinit EntryPoint<int(Object)> PyCallable_Check{"PyCallable_Check"};
inline constinit EntryPoint<Object(Object, Object, Object)> PyObject_Call{"PyObject_Call"};
inline constinit EntryPoint<Object(Object)> PyObject_GetIter{"PyObject_GetIter"};
inline constinit EntryPoint<Object(Object)> PyIter_Next{"PyIter_Next"};
inline constinit EntryPoint<int(Object, Object, int)> PyObject_RichCompareBool{
    "PyObject_RichCompareBool"};
inline constinit ObjectSymbol NoneStruct{"_Py_NoneStruct"};

// containers
inline constinit EntryPoint<Object(Size)> PyTuple_New{"PyTuple_New"};
inline constinit EntryPoint<int(Object, Size, Object)> PyTuple_SetItem{"PyTuple_SetItem"};
inline constinit EntryPoint<Object(Size)> PyList_New{"PyList_New"};
inline constinit EntryPoint<int(Object, Size, Object)> PyList_SetItem{"PyList_SetItem"};
inline constinit EntryPoint<Object()> PyDict_New{"PyDict_New"};
inline constinit EntryPoint<int(Object, Object, Object)> PyDict_SetItem{"PyDict_SetItem"};
inline constinit EntryPoint<int(Object, Size *, Object *, Object *)> PyDict_Next{"PyDict_Next"};
inline constinit ObjectSymbol PyDict_Type{"PyDict_Type"};

// numbers
inline constinit EntryPoint<Object(long)> PyBool_FromLong{"PyBool_FromLong"};
inline constinit ObjectSymbol PyBool_Type{"PyBool_Type"};
inline constinit ObjectSymbol TrueStruct{"_Py_TrueStruct"};
inline constinit EntryPoint<long(Object)> PyLong_AsLong{"PyLong_AsLong", "PyInt_AsLong"};
inline constinit EntryPoint<Object(long)> PyLong_FromLong{"PyLong_FromLong", "PyInt_FromLong"};
inline constinit EntryPoint<unsigned long(Object)> PyLong_AsUnsignedLongMask{
    "PyLong_AsUnsignedLongMask", "PyInt_AsUnsignedLongMask"};
inline constinit EntryPoint<Object(unsigned long)> PyLong_FromUnsignedLong{
    "PyLong_FromUnsignedLong", "PyInt_FromSize_t"};
inline constinit EntryPoint<double(Object)> PyFloat_AsDouble{"PyFloat_AsDouble"};
inline constinit EntryPoint<Object(double)> PyFloat_FromDouble{"PyFloat_FromDouble"};

// texts and bytes
inline constinit EntryPoint<Object(const char *, Size, const char *)> PyUnicode_DecodeUTF8{
    "PyUnicode_DecodeUTF8"};
inline constinit EntryPoint<const char *(Object)> PyUnicode_AsUTF8{"PyUnicode_AsUTF8",
                                                                   "PyString_AsString"};
inline constinit EntryPoint<const char *(Object, Size *)> PyUnicode_AsUTF8AndSize{
    "PyUnicode_AsUTF8AndSize"};
inline constinit EntryPoint<Object(Object, const char *, const char *)> PyUnicode_AsEncodedString{
    "PyUnicode_AsEncodedString"};
inline constinit EntryPoint<Object(const char *, Size)> PyBytes_FromStringAndSize{
    "PyBytes_FromStringAndSize", "PyString_FromStringAndSize"};
inline constinit EntryPoint<int(Object, char **, Size *)> PyBytes_AsStringAndSize{
    "PyBytes_AsStringAndSize", "PyString_AsStringAndSize"};

// host closures
inline constinit EntryPoint<Object(void *, const char *, void (*)(Object))> PyCapsule_New{
    "PyCapsule_New"};
inline constinit EntryPoint<void *(Object, const char *)> PyCapsule_GetPointer{
    "PyCapsule_GetPointer"};
inline constinit EntryPoint<Object(const MethodRecord *, Object, Object)> PyCFunction_NewEx{
    "PyCFunction_NewEx"};

// arithmetic
using Unary = EntryPoint<Object(Object)>;
using Binary = EntryPoint<Object(Object, Object)>;
inline constinit Binary PyNumber_Add{"PyNumber_Add"};
inline constinit Binary PyNumber_Subtract{"PyNumber_Subtract"};
inline constinit Binary PyNumber_Multiply{"PyNumber_Multiply"};
inline constinit Binary PyNumber_TrueDivide{"PyNumber_TrueDivide"};
inline constinit Binary PyNumber_And{"PyNumber_And"};
inline constinit Binary PyNumber_Or{"PyNumber_Or"};
inline constinit Binary PyNumber_Xor{"PyNumber_Xor"};
inline constinit Unary PyNumber_Negative{"PyNumber_Negative"};
inline constinit Unary PyNumber_Invert{"PyNumber_Invert"};
inline constinit Binary PyNumber_InPlaceAdd{"PyNumber_InPlaceAdd"};
inline constinit Binary PyNumber_InPlaceSubtract{"PyNumber_InPlaceSubtract"};
inline constinit Binary PyNumber_InPlaceMultiply{"PyNumber_InPlaceMultiply"};
inline constinit Binary PyNumber_InPlaceTrueDivide{"PyNumber_InPlaceTrueDivide"};
inline constinit Binary PyNumber_InPlaceAnd{"PyNumber_InPlaceAnd"};
inline constinit Binary PyNumber_InPlaceOr{"PyNumber_InPlaceOr"};
inline constinit Binary PyNumber_InPlaceXor{"PyNumber_InPlaceXor"};

}
