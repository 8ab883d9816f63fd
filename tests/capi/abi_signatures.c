/* The C interface's signatures and layouts as released. Each line fixes
 * one function's type: a changed parameter or result no longer converts
 * and this file stops compiling (it is built with incompatible pointer
 * types as errors). A deliberate change raises NORVIK50_C_ABI, adds a new
 * symbol version and updates this file and norvik50.symbols together. */
#include <stddef.h>

#include "norvik50/norvik50.h"

_Static_assert(NORVIK50_C_ABI == 1, "ABI generation");
_Static_assert(NORVIK50_VT_DECIMAL == 14 && NORVIK50_VT_BYTE == 17 &&
                   NORVIK50_VT_RECORD == 36 && NORVIK50_VT_ARRAY == 0x2000,
               "type codes");
_Static_assert(NORVIK50_METHOD == 1 && NORVIK50_PROPERTYGET == 2 && NORVIK50_PROPERTYLET == 4,
               "call forms");
_Static_assert(NORVIK50_DIALOGS_HEADLESS == 0 && NORVIK50_DIALOGS_QT == 1, "dialog choices");
#if defined(__x86_64__) || defined(__aarch64__)
_Static_assert(sizeof(norvik50_error) == 24 && offsetof(norvik50_error, source) == 16,
               "norvik50_error layout");
_Static_assert(sizeof(norvik50_member) == 32 && offsetof(norvik50_member, param_count) == 24,
               "norvik50_member layout");
_Static_assert(sizeof(norvik50_param) == 40 && offsetof(norvik50_param, record_type) == 32,
               "norvik50_param layout");
#endif

extern void (*const abi_norvik50_error_clear)(norvik50_error*);
extern void (*const abi_norvik50_free)(void*);
extern const char* (*const abi_norvik50_version)(void);
extern norvik50_value* (*const abi_norvik50_value_new_empty)(void);
extern norvik50_value* (*const abi_norvik50_value_new_null)(void);
extern norvik50_value* (*const abi_norvik50_value_new_integer)(int16_t);
extern norvik50_value* (*const abi_norvik50_value_new_long)(int32_t);
extern norvik50_value* (*const abi_norvik50_value_new_single)(float);
extern norvik50_value* (*const abi_norvik50_value_new_double)(double);
extern norvik50_value* (*const abi_norvik50_value_new_currency)(int64_t);
extern norvik50_value* (*const abi_norvik50_value_new_boolean)(int);
extern norvik50_value* (*const abi_norvik50_value_new_error)(int32_t);
extern norvik50_value* (*const abi_norvik50_value_new_byte)(uint8_t);
extern norvik50_value* (*const abi_norvik50_value_new_string16)(const uint16_t*, size_t);
extern norvik50_value* (*const abi_norvik50_value_new_nothing)(void);
extern norvik50_value* (*const abi_norvik50_value_new_collection)(void);
extern int32_t (*const abi_norvik50_value_new_date)(double, norvik50_value**);
extern int32_t (*const abi_norvik50_value_new_utf8)(const char*, size_t, norvik50_value**);
extern int32_t (*const abi_norvik50_value_new_decimal)(uint32_t, uint64_t, uint8_t, int, norvik50_value**);
extern int32_t (*const abi_norvik50_value_new_array)(uint16_t, int32_t, size_t, norvik50_value**);
extern int32_t (*const abi_norvik50_value_new_unbounded_array)(uint16_t, norvik50_value**);
extern int32_t (*const abi_norvik50_value_new_record)(const char*, norvik50_value**);
extern norvik50_value* (*const abi_norvik50_value_copy)(const norvik50_value*);
extern void (*const abi_norvik50_value_free)(norvik50_value*);
extern uint16_t (*const abi_norvik50_value_type)(const norvik50_value*);
extern int32_t (*const abi_norvik50_value_get_integer)(const norvik50_value*, int16_t*);
extern int32_t (*const abi_norvik50_value_get_long)(const norvik50_value*, int32_t*);
extern int32_t (*const abi_norvik50_value_get_single)(const norvik50_value*, float*);
extern int32_t (*const abi_norvik50_value_get_double)(const norvik50_value*, double*);
extern int32_t (*const abi_norvik50_value_get_currency)(const norvik50_value*, int64_t*);
extern int32_t (*const abi_norvik50_value_get_date)(const norvik50_value*, double*);
extern int32_t (*const abi_norvik50_value_get_boolean)(const norvik50_value*, int16_t*);
extern int32_t (*const abi_norvik50_value_get_error)(const norvik50_value*, int32_t*);
extern int32_t (*const abi_norvik50_value_get_byte)(const norvik50_value*, uint8_t*);
extern int32_t (*const abi_norvik50_value_get_decimal)(const norvik50_value*, uint32_t*, uint64_t*, uint8_t*, int*);
extern int32_t (*const abi_norvik50_value_get_string16)(const norvik50_value*, const uint16_t**, size_t*);
extern int32_t (*const abi_norvik50_value_get_utf8)(const norvik50_value*, char**, size_t*);
extern int32_t (*const abi_norvik50_array_bounds)(const norvik50_value*, int32_t*, size_t*);
extern int32_t (*const abi_norvik50_array_get)(const norvik50_value*, int64_t, norvik50_value**);
extern int32_t (*const abi_norvik50_array_set)(norvik50_value*, int64_t, const norvik50_value*);
extern int32_t (*const abi_norvik50_record_type)(const norvik50_value*, const char**);
extern int32_t (*const abi_norvik50_record_field_count)(const norvik50_value*, size_t*);
extern int32_t (*const abi_norvik50_record_field)(const norvik50_value*, size_t, const char**, norvik50_value**);
extern int32_t (*const abi_norvik50_record_set)(norvik50_value*, const char*, const norvik50_value*);
extern int32_t (*const abi_norvik50_object_id)(const norvik50_value*, uintptr_t*);
extern int32_t (*const abi_norvik50_collection_count)(const norvik50_value*, int32_t*);
extern int32_t (*const abi_norvik50_collection_add)(norvik50_value*, const norvik50_value*);
extern int32_t (*const abi_norvik50_collection_item)(const norvik50_value*, int32_t, norvik50_value**);
extern int32_t (*const abi_norvik50_lib_new)(norvik50_lib**, norvik50_error*);
extern int32_t (*const abi_norvik50_lib_free)(norvik50_lib*);
extern int32_t (*const abi_norvik50_invoke)(norvik50_lib*, const char*, int32_t, norvik50_value**, size_t, norvik50_value**, norvik50_error*);
extern size_t (*const abi_norvik50_member_count)(void);
extern int32_t (*const abi_norvik50_member_get)(size_t, norvik50_member*);
extern int32_t (*const abi_norvik50_member_param)(size_t, size_t, norvik50_param*);
extern int32_t (*const abi_norvik50_set_dialogs)(int32_t, norvik50_error*);
extern int32_t (*const abi_norvik50_set_host_application)(const char*, const char*);
void (*const abi_norvik50_error_clear)(norvik50_error*) = norvik50_error_clear;
void (*const abi_norvik50_free)(void*) = norvik50_free;
const char* (*const abi_norvik50_version)(void) = norvik50_version;
norvik50_value* (*const abi_norvik50_value_new_empty)(void) = norvik50_value_new_empty;
norvik50_value* (*const abi_norvik50_value_new_null)(void) = norvik50_value_new_null;
norvik50_value* (*const abi_norvik50_value_new_integer)(int16_t) = norvik50_value_new_integer;
norvik50_value* (*const abi_norvik50_value_new_long)(int32_t) = norvik50_value_new_long;
norvik50_value* (*const abi_norvik50_value_new_single)(float) = norvik50_value_new_single;
norvik50_value* (*const abi_norvik50_value_new_double)(double) = norvik50_value_new_double;
norvik50_value* (*const abi_norvik50_value_new_currency)(int64_t) = norvik50_value_new_currency;
norvik50_value* (*const abi_norvik50_value_new_boolean)(int) = norvik50_value_new_boolean;
norvik50_value* (*const abi_norvik50_value_new_error)(int32_t) = norvik50_value_new_error;
norvik50_value* (*const abi_norvik50_value_new_byte)(uint8_t) = norvik50_value_new_byte;
norvik50_value* (*const abi_norvik50_value_new_string16)(const uint16_t*, size_t) = norvik50_value_new_string16;
norvik50_value* (*const abi_norvik50_value_new_nothing)(void) = norvik50_value_new_nothing;
norvik50_value* (*const abi_norvik50_value_new_collection)(void) = norvik50_value_new_collection;
int32_t (*const abi_norvik50_value_new_date)(double, norvik50_value**) = norvik50_value_new_date;
int32_t (*const abi_norvik50_value_new_utf8)(const char*, size_t, norvik50_value**) = norvik50_value_new_utf8;
int32_t (*const abi_norvik50_value_new_decimal)(uint32_t, uint64_t, uint8_t, int, norvik50_value**) = norvik50_value_new_decimal;
int32_t (*const abi_norvik50_value_new_array)(uint16_t, int32_t, size_t, norvik50_value**) = norvik50_value_new_array;
int32_t (*const abi_norvik50_value_new_unbounded_array)(uint16_t, norvik50_value**) = norvik50_value_new_unbounded_array;
int32_t (*const abi_norvik50_value_new_record)(const char*, norvik50_value**) = norvik50_value_new_record;
norvik50_value* (*const abi_norvik50_value_copy)(const norvik50_value*) = norvik50_value_copy;
void (*const abi_norvik50_value_free)(norvik50_value*) = norvik50_value_free;
uint16_t (*const abi_norvik50_value_type)(const norvik50_value*) = norvik50_value_type;
int32_t (*const abi_norvik50_value_get_integer)(const norvik50_value*, int16_t*) = norvik50_value_get_integer;
int32_t (*const abi_norvik50_value_get_long)(const norvik50_value*, int32_t*) = norvik50_value_get_long;
int32_t (*const abi_norvik50_value_get_single)(const norvik50_value*, float*) = norvik50_value_get_single;
int32_t (*const abi_norvik50_value_get_double)(const norvik50_value*, double*) = norvik50_value_get_double;
int32_t (*const abi_norvik50_value_get_currency)(const norvik50_value*, int64_t*) = norvik50_value_get_currency;
int32_t (*const abi_norvik50_value_get_date)(const norvik50_value*, double*) = norvik50_value_get_date;
int32_t (*const abi_norvik50_value_get_boolean)(const norvik50_value*, int16_t*) = norvik50_value_get_boolean;
int32_t (*const abi_norvik50_value_get_error)(const norvik50_value*, int32_t*) = norvik50_value_get_error;
int32_t (*const abi_norvik50_value_get_byte)(const norvik50_value*, uint8_t*) = norvik50_value_get_byte;
int32_t (*const abi_norvik50_value_get_decimal)(const norvik50_value*, uint32_t*, uint64_t*, uint8_t*, int*) = norvik50_value_get_decimal;
int32_t (*const abi_norvik50_value_get_string16)(const norvik50_value*, const uint16_t**, size_t*) = norvik50_value_get_string16;
int32_t (*const abi_norvik50_value_get_utf8)(const norvik50_value*, char**, size_t*) = norvik50_value_get_utf8;
int32_t (*const abi_norvik50_array_bounds)(const norvik50_value*, int32_t*, size_t*) = norvik50_array_bounds;
int32_t (*const abi_norvik50_array_get)(const norvik50_value*, int64_t, norvik50_value**) = norvik50_array_get;
int32_t (*const abi_norvik50_array_set)(norvik50_value*, int64_t, const norvik50_value*) = norvik50_array_set;
int32_t (*const abi_norvik50_record_type)(const norvik50_value*, const char**) = norvik50_record_type;
int32_t (*const abi_norvik50_record_field_count)(const norvik50_value*, size_t*) = norvik50_record_field_count;
int32_t (*const abi_norvik50_record_field)(const norvik50_value*, size_t, const char**, norvik50_value**) = norvik50_record_field;
int32_t (*const abi_norvik50_record_set)(norvik50_value*, const char*, const norvik50_value*) = norvik50_record_set;
int32_t (*const abi_norvik50_object_id)(const norvik50_value*, uintptr_t*) = norvik50_object_id;
int32_t (*const abi_norvik50_collection_count)(const norvik50_value*, int32_t*) = norvik50_collection_count;
int32_t (*const abi_norvik50_collection_add)(norvik50_value*, const norvik50_value*) = norvik50_collection_add;
int32_t (*const abi_norvik50_collection_item)(const norvik50_value*, int32_t, norvik50_value**) = norvik50_collection_item;
int32_t (*const abi_norvik50_lib_new)(norvik50_lib**, norvik50_error*) = norvik50_lib_new;
int32_t (*const abi_norvik50_lib_free)(norvik50_lib*) = norvik50_lib_free;
int32_t (*const abi_norvik50_invoke)(norvik50_lib*, const char*, int32_t, norvik50_value**, size_t, norvik50_value**, norvik50_error*) = norvik50_invoke;
size_t (*const abi_norvik50_member_count)(void) = norvik50_member_count;
int32_t (*const abi_norvik50_member_get)(size_t, norvik50_member*) = norvik50_member_get;
int32_t (*const abi_norvik50_member_param)(size_t, size_t, norvik50_param*) = norvik50_member_param;
int32_t (*const abi_norvik50_set_dialogs)(int32_t, norvik50_error*) = norvik50_set_dialogs;
int32_t (*const abi_norvik50_set_host_application)(const char*, const char*) = norvik50_set_host_application;