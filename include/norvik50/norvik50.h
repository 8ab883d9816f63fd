/*
 * The C interface of norvik50: the stable ABI that every other language
 * binds to (the Python package and the .NET assembly are built on it).
 * Plain C99; no C++ type appears here.
 *
 * A host creates one library object (norvik50_lib_new), calls its members
 * by name with norvik50_invoke, and destroys it (norvik50_lib_free). The
 * members, their arguments and the argument conversions are those of the
 * C++ dispatch by name; the member table is readable here too, so a
 * binding can generate its surface from it.
 *
 * Errors. A function that can fail returns int32_t: 0 for success, else
 * the host runtime's error number (5 invalid procedure call or argument,
 * 9 subscript out of range, 13 type mismatch, 91 object variable not set,
 * 438 no such member, 449 argument not optional, 450 wrong number of
 * arguments, and whatever a member raises). Where a function takes a
 * norvik50_error*, the number, description and source are written there
 * too; pass NULL when only the number matters. No C++ exception ever
 * leaves this interface.
 *
 * Ownership.
 *  - A norvik50_value* that a function hands out (a return value or an
 *    out-pointer that is not const) belongs to the caller, who frees it with
 *    norvik50_value_free. Values passed in are copied; the caller keeps them.
 *  - A const pointer handed out (a string's UTF-16 units, a record's type
 *    name, everything in the member table) is borrowed: valid as the
 *    functions that hand it out say, never freed by the caller.
 *  - char* text handed out (UTF-8 forms) is freed with norvik50_free.
 *  - A norvik50_error owns its description and source: zero it once
 *    (NORVIK50_ERROR_INIT), let any number of calls fill it (each frees
 *    what the previous one left), and release it with norvik50_error_clear.
 *
 * Thread safety: the functions on values and the member table may be
 * called from any thread. A library object is used by one thread at a
 * time; dialogs run on the thread that shows the first one.
 */
#ifndef NORVIK50_NORVIK50_H_
#define NORVIK50_NORVIK50_H_

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#if defined(NORVIK50_BUILDING)
#define NORVIK50_API __declspec(dllexport)
#else
#define NORVIK50_API __declspec(dllimport)
#endif
#else
#define NORVIK50_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Raised when a declaration here changes incompatibly. */
#define NORVIK50_C_ABI 1

/* ---- Errors ------------------------------------------------------------ */

typedef struct norvik50_error {
  int32_t number;    /* 0 when the call succeeded */
  char* description; /* UTF-8, owned by the struct; NULL when number is 0 */
  char* source;      /* UTF-8, owned by the struct; NULL when number is 0 */
} norvik50_error;

#define NORVIK50_ERROR_INIT {0, NULL, NULL}

/* Frees the texts of `err` and zeroes it. NULL is ignored. */
NORVIK50_API void norvik50_error_clear(norvik50_error* err);

/* Frees text the library handed out (UTF-8 forms). NULL is ignored. */
NORVIK50_API void norvik50_free(void* text);

/* "major.minor.patch" of the loaded library; static, never freed. */
NORVIK50_API const char* norvik50_version(void);

/* ---- Values -------------------------------------------------------------
 * A value is the automation tagged value: one of the type codes below, a
 * one-dimensional array with its lower bound, a record, or an object. */

typedef struct norvik50_value norvik50_value;

enum {
  NORVIK50_VT_EMPTY = 0,
  NORVIK50_VT_NULL = 1,
  NORVIK50_VT_INTEGER = 2,  /* int16_t */
  NORVIK50_VT_LONG = 3,     /* int32_t */
  NORVIK50_VT_SINGLE = 4,   /* float */
  NORVIK50_VT_DOUBLE = 5,   /* double */
  NORVIK50_VT_CURRENCY = 6, /* int64_t scaled by 10,000 */
  NORVIK50_VT_DATE = 7,     /* serial: days since 1899-12-30, fraction = time */
  NORVIK50_VT_STRING = 8,   /* UTF-16 with a length */
  NORVIK50_VT_OBJECT = 9,   /* a host object, or Nothing */
  NORVIK50_VT_ERROR = 10,   /* an error value (int32_t code) */
  NORVIK50_VT_BOOLEAN = 11, /* int16_t: True is -1, False 0 */
  NORVIK50_VT_VARIANT = 12, /* as an element or parameter type: any value */
  NORVIK50_VT_DECIMAL = 14, /* 96-bit magnitude, scale 0..28, sign */
  NORVIK50_VT_BYTE = 17,    /* uint8_t */
  NORVIK50_VT_RECORD = 36,  /* a user-defined type such as typFileInfo */
  NORVIK50_VT_ARRAY = 0x2000 /* flag, combined with the element type */
};

/* Constructors. Each returns a new value (the caller's), or NULL only when
 * memory is exhausted. */
NORVIK50_API norvik50_value* norvik50_value_new_empty(void);
NORVIK50_API norvik50_value* norvik50_value_new_null(void);
NORVIK50_API norvik50_value* norvik50_value_new_integer(int16_t v);
NORVIK50_API norvik50_value* norvik50_value_new_long(int32_t v);
NORVIK50_API norvik50_value* norvik50_value_new_single(float v);
NORVIK50_API norvik50_value* norvik50_value_new_double(double v);
/* `scaled` is the amount times 10,000: 12.5 is 125000. */
NORVIK50_API norvik50_value* norvik50_value_new_currency(int64_t scaled);
/* Any non-zero `v` is True (-1). */
NORVIK50_API norvik50_value* norvik50_value_new_boolean(int v);
NORVIK50_API norvik50_value* norvik50_value_new_error(int32_t code);
NORVIK50_API norvik50_value* norvik50_value_new_byte(uint8_t v);
/* `length` UTF-16 units from `units` (which may be NULL when length is 0;
 * NULL with a length gives NULL). Unpaired surrogates are kept as they are. */
NORVIK50_API norvik50_value* norvik50_value_new_string16(const uint16_t* units, size_t length);
/* An object value holding Nothing. */
NORVIK50_API norvik50_value* norvik50_value_new_nothing(void);
/* A new, empty collection (items addressed from 1), as an object value. */
NORVIK50_API norvik50_value* norvik50_value_new_collection(void);

/* Constructors that check their input; *out is set only on success.
 * A Date serial outside 100-01-01..9999-12-31 (or NaN) is 6 (overflow). */
NORVIK50_API int32_t norvik50_value_new_date(double serial, norvik50_value** out);
/* `length` bytes of UTF-8 from `text`, or up to its NUL when length is
 * (size_t)-1. Text that is not well-formed UTF-8 is 5. */
NORVIK50_API int32_t norvik50_value_new_utf8(const char* text, size_t length,
                                             norvik50_value** out);
/* The value (-1)^negative * (hi * 2^64 + lo) / 10^scale. A scale past 28
 * is 5. */
NORVIK50_API int32_t norvik50_value_new_decimal(uint32_t hi, uint64_t lo, uint8_t scale,
                                                int negative, norvik50_value** out);
/* An array lower..lower+count-1 whose elements start Empty ("" for a
 * String array); element_type is a scalar type code or
 * NORVIK50_VT_VARIANT. Past the Long range or an unknown element type is 5. */
NORVIK50_API int32_t norvik50_value_new_array(uint16_t element_type, int32_t lower,
                                              size_t count, norvik50_value** out);
/* An array declared but never dimensioned: asking for its bounds is 9. */
NORVIK50_API int32_t norvik50_value_new_unbounded_array(uint16_t element_type,
                                                        norvik50_value** out);
/* A record of type `type_name` (ASCII, e.g. "typFileInfo") with no fields
 * yet; norvik50_record_set adds them. */
NORVIK50_API int32_t norvik50_value_new_record(const char* type_name, norvik50_value** out);

/* A deep copy (objects are shared, as the runtime copies them); NULL when
 * `v` is NULL or memory is exhausted. */
NORVIK50_API norvik50_value* norvik50_value_copy(const norvik50_value* v);
/* Frees `v`; NULL is ignored. */
NORVIK50_API void norvik50_value_free(norvik50_value* v);

/* The type code (arrays: NORVIK50_VT_ARRAY | element type); 0 (Empty) for
 * NULL. */
NORVIK50_API uint16_t norvik50_value_type(const norvik50_value* v);

/* Readers: 0 and *out set when `v` holds that type; 13 when it holds
 * another, 91 when `v` is NULL. No reader converts between types: a Long
 * is not read as a Double (a binding converts when it wants to). */
NORVIK50_API int32_t norvik50_value_get_integer(const norvik50_value* v, int16_t* out);
NORVIK50_API int32_t norvik50_value_get_long(const norvik50_value* v, int32_t* out);
NORVIK50_API int32_t norvik50_value_get_single(const norvik50_value* v, float* out);
NORVIK50_API int32_t norvik50_value_get_double(const norvik50_value* v, double* out);
NORVIK50_API int32_t norvik50_value_get_currency(const norvik50_value* v, int64_t* scaled);
NORVIK50_API int32_t norvik50_value_get_date(const norvik50_value* v, double* serial);
NORVIK50_API int32_t norvik50_value_get_boolean(const norvik50_value* v, int16_t* out);
NORVIK50_API int32_t norvik50_value_get_error(const norvik50_value* v, int32_t* code);
NORVIK50_API int32_t norvik50_value_get_byte(const norvik50_value* v, uint8_t* out);
NORVIK50_API int32_t norvik50_value_get_decimal(const norvik50_value* v, uint32_t* hi,
                                                uint64_t* lo, uint8_t* scale, int* negative);
/* The string's UTF-16 units, borrowed: valid until `v` is freed or
 * changed. Not NUL-terminated. */
NORVIK50_API int32_t norvik50_value_get_string16(const norvik50_value* v,
                                                 const uint16_t** units, size_t* length);
/* The string as NUL-terminated UTF-8 (free with norvik50_free); an
 * unpaired surrogate becomes U+FFFD. `length` (may be NULL) gets the
 * bytes before the NUL. */
NORVIK50_API int32_t norvik50_value_get_utf8(const norvik50_value* v, char** text,
                                             size_t* length);

/* ---- Arrays ---------------------------------------------------------- */

/* The lower bound and element count; 9 for an unbounded array, 13 when
 * `v` is not an array. */
NORVIK50_API int32_t norvik50_array_bounds(const norvik50_value* v, int32_t* lower,
                                           size_t* count);
/* A copy of the element at runtime index `index`; 9 outside the bounds. */
NORVIK50_API int32_t norvik50_array_get(const norvik50_value* v, int64_t index,
                                        norvik50_value** out);
/* Stores a copy of `item` at `index`, converted to the element type (13
 * or 6 when it cannot be); 9 outside the bounds. */
NORVIK50_API int32_t norvik50_array_set(norvik50_value* v, int64_t index,
                                        const norvik50_value* item);

/* ---- Records ----------------------------------------------------------- */

/* The record's type name, borrowed (valid while `v` is unchanged). */
NORVIK50_API int32_t norvik50_record_type(const norvik50_value* v, const char** type_name);
NORVIK50_API int32_t norvik50_record_field_count(const norvik50_value* v, size_t* count);
/* Field `index` (0-based, declaration order): its name, borrowed, and a
 * copy of its value. Either out-pointer may be NULL. 9 past the last. */
NORVIK50_API int32_t norvik50_record_field(const norvik50_value* v, size_t index,
                                           const char** name, norvik50_value** out);
/* Sets field `name` to a copy of `item`, appending the field when the
 * record has none of that name. */
NORVIK50_API int32_t norvik50_record_set(norvik50_value* v, const char* name,
                                         const norvik50_value* item);

/* ---- Objects ------------------------------------------------------------ */

/* An identity for the object `v` holds: equal for two values holding the
 * same object, 0 for Nothing. 13 when `v` is not an object. */
NORVIK50_API int32_t norvik50_object_id(const norvik50_value* v, uintptr_t* id);
/* A collection's item count; 13 when `v` holds no collection. */
NORVIK50_API int32_t norvik50_collection_count(const norvik50_value* v, int32_t* count);
/* Appends a copy of `item`. */
NORVIK50_API int32_t norvik50_collection_add(norvik50_value* v, const norvik50_value* item);
/* A copy of the item at 1-based `index`; 9 outside 1..count. */
NORVIK50_API int32_t norvik50_collection_item(const norvik50_value* v, int32_t index,
                                              norvik50_value** out);

/* ---- The library object ------------------------------------------------ */

typedef struct norvik50_lib norvik50_lib;

/* Creates the library object, which writes "<application> initialized."
 * to the log as a C++ host's LIB does. */
NORVIK50_API int32_t norvik50_lib_new(norvik50_lib** out, norvik50_error* err);
/* Destroys `lib` (its closing line goes to the log). 91 for NULL or a
 * handle that is not a live library object (already freed, never made):
 * such a handle is refused, never followed. */
NORVIK50_API int32_t norvik50_lib_free(norvik50_lib* lib);

/* How a member is called: a method, a property's get form or its let
 * form. NORVIK50_METHOD | NORVIK50_PROPERTYGET takes whichever the member
 * has, the method first, as a call by name does. */
enum {
  NORVIK50_METHOD = 1,
  NORVIK50_PROPERTYGET = 2,
  NORVIK50_PROPERTYLET = 4
};

/* Calls member `name` (ASCII, any case) of `lib`.
 *
 * args[0..argc-1] are the arguments in the member's order; a NULL element
 * omits that (optional) argument, as do arguments past argc. A let form
 * takes the new value as its last argument. Arguments are converted to the
 * parameters' types as by-name calls convert them (text to numbers in the
 * current locale: "1.234,56" is 1234.56 in German).
 *
 * By-reference arguments the member writes back replace the values in
 * args[] at their positions: the old value there is freed, and an omitted
 * (NULL) position receives a new value, which the caller then owns. An
 * argument the member does not write keeps the caller's value as it was.
 *
 * *result (when `result` is not NULL) gets the member's result, the
 * caller's; NULL for a member that returns nothing. On failure args[] and
 * *result are unchanged and `err` says why: 91 for a NULL or dead `lib`,
 * 438 for an unknown member or form, 449/450 for the argument count,
 * 13 or 6 for an argument that cannot be converted, 5 for a NULL name or
 * an unknown `how`, else the member's own error. */
NORVIK50_API int32_t norvik50_invoke(norvik50_lib* lib, const char* name, int32_t how,
                                     norvik50_value** args, size_t argc,
                                     norvik50_value** result, norvik50_error* err);

/* ---- The member table ---------------------------------------------------
 * The table that `norvik50 members` prints, read-only and fixed for the
 * life of the process: every pointer in it stays valid until the library
 * is unloaded. */

typedef struct norvik50_member {
  const char* name;     /* as declared, e.g. "tklFindSubString" */
  int32_t how;          /* NORVIK50_METHOD, _PROPERTYGET or _PROPERTYLET */
  uint16_t result_type; /* type code; 0 (Empty) for no result */
  int32_t designed_here;/* non-zero: this library designed the behaviour */
  size_t param_count;
} norvik50_member;

typedef struct norvik50_param {
  const char* name;
  uint16_t type;        /* scalar code, VARIANT, ARRAY, RECORD or OBJECT */
  int32_t by_ref;       /* non-zero: the member may write it back */
  int32_t optional;
  /* The default an omitted argument takes; NULL when it has none (an
   * optional argument without one arrives as missing). */
  const norvik50_value* default_value;
  const char* record_type; /* for RECORD parameters, else "" */
} norvik50_param;

/* The number of member forms (a property's get and let count apart). */
NORVIK50_API size_t norvik50_member_count(void);
/* Entry `index` (0-based); 9 past the last. */
NORVIK50_API int32_t norvik50_member_get(size_t index, norvik50_member* out);
/* Parameter `param` of entry `member`; 9 when either is past the last. */
NORVIK50_API int32_t norvik50_member_param(size_t member, size_t param, norvik50_param* out);

/* ---- Host settings -------------------------------------------------------- */

enum {
  NORVIK50_DIALOGS_HEADLESS = 0, /* every dialog answers as failed at once */
  NORVIK50_DIALOGS_QT = 1        /* the Qt forms (libnorvik50_qt) */
};

/* Chooses how dialogs are shown, for the whole process. Headless is the
 * default. The Qt forms come from libnorvik50_qt beside this library (or
 * the file NORVIK50_QT_LIBRARY names); 53 when it cannot be loaded, and
 * the choice stays as it was. Where Qt finds no display, the Qt choice
 * answers headless. The dialog script and log (NORVIK50_DIALOG_SCRIPT,
 * NORVIK50_DIALOG_LOG) act on the Qt forms as for the command line. */
NORVIK50_API int32_t norvik50_set_dialogs(int32_t which, norvik50_error* err);

/* The application name the log writes and the title dialogs use when the
 * caller gives none (UTF-8; `title` may be NULL or "" for the name). 5
 * for a NULL name or text that is not UTF-8. */
NORVIK50_API int32_t norvik50_set_host_application(const char* name, const char* title);

#ifdef __cplusplus
}
#endif

#endif /* NORVIK50_NORVIK50_H_ */
