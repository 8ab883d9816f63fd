/* The C interface seen from a C host: compiled as C99, linked against the
 * shared library only. Prints "N passed, N failed" and exits non-zero on
 * any failure. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "norvik50/norvik50.h"

static int passed;
static int failed;

#define CHECK(cond)                                                   \
  do {                                                                \
    if (cond) {                                                       \
      ++passed;                                                       \
    } else {                                                          \
      ++failed;                                                       \
      fprintf(stderr, "%s:%d: CHECK failed: %s\n", __FILE__, __LINE__, #cond); \
    }                                                                 \
  } while (0)

static norvik50_value* Utf8(const char* text) {
  norvik50_value* v = NULL;
  if (norvik50_value_new_utf8(text, (size_t)-1, &v) != 0) return NULL;
  return v;
}

/* 1 when `v` is a String equal to the UTF-8 `expected`. */
static int StringIs(const norvik50_value* v, const char* expected) {
  char* text = NULL;
  int same;
  if (norvik50_value_get_utf8(v, &text, NULL) != 0) return 0;
  same = strcmp(text, expected) == 0;
  norvik50_free(text);
  return same;
}

static void TestLifecycle(void) {
  norvik50_lib* lib = NULL;
  norvik50_error err = NORVIK50_ERROR_INIT;
  CHECK(norvik50_lib_new(&lib, &err) == 0 && lib != NULL && err.number == 0);
  CHECK(norvik50_lib_free(lib) == 0);
  /* A freed handle is refused, never followed; so are NULL and garbage. */
  CHECK(norvik50_lib_free(lib) == 91);
  CHECK(norvik50_lib_free(NULL) == 91);
  CHECK(norvik50_invoke(lib, "tklVal", NORVIK50_METHOD, NULL, 0, NULL, &err) == 91);
  CHECK(err.number == 91 && err.description != NULL && strlen(err.description) > 0);
  CHECK(norvik50_invoke((norvik50_lib*)&err, "tklVal", NORVIK50_METHOD, NULL, 0, NULL, &err) ==
        91);
  CHECK(norvik50_lib_new(NULL, &err) == 5);
  norvik50_error_clear(&err);
  CHECK(err.number == 0 && err.description == NULL && err.source == NULL);
}

static void TestCalls(norvik50_lib* lib) {
  norvik50_error err = NORVIK50_ERROR_INIT;
  norvik50_value* result = NULL;
  norvik50_value* args[7] = {NULL};
  double d = 0;
  int16_t i = 0;

  /* A method with a result, case-insensitive name. */
  args[0] = Utf8("1234.5");
  CHECK(norvik50_invoke(lib, "TKLVAL", NORVIK50_METHOD | NORVIK50_PROPERTYGET, args, 1, &result,
                        &err) == 0);
  CHECK(norvik50_value_get_double(result, &d) == 0 && d == 1234.5);
  CHECK(norvik50_value_get_long(result, NULL) == 13); /* a Double is not read as a Long */
  norvik50_value_free(result);
  result = NULL;
  norvik50_value_free(args[0]);

  /* By-reference write-back into the caller's array: sBefore, sTerm and
   * sAfter are positions 2..4, whatever the caller held there. */
  args[0] = Utf8("left-mid-right");
  args[1] = Utf8("-");
  args[2] = norvik50_value_new_long(7);
  args[3] = Utf8("old");
  args[4] = norvik50_value_new_empty();
  CHECK(norvik50_invoke(lib, "tklSeparateString", NORVIK50_METHOD, args, 5, &result, &err) == 0);
  CHECK(result == NULL); /* a member without a result */
  CHECK(StringIs(args[2], "left"));
  CHECK(StringIs(args[3], "-"));
  CHECK(StringIs(args[4], "mid-right"));
  CHECK(StringIs(args[0], "left-mid-right")); /* by value: untouched */
  {
    int k;
    for (k = 0; k < 5; ++k) norvik50_value_free(args[k]);
  }

  /* An omitted optional by-reference argument that the member writes
   * (sFound, position 6) arrives as a new value in the caller's slot;
   * iStartSearch (position 2), given and not written, stays the caller's. */
  args[0] = Utf8("abcabc");
  args[1] = Utf8("C");
  args[2] = norvik50_value_new_integer(4);
  args[3] = args[4] = args[5] = args[6] = NULL;
  CHECK(norvik50_invoke(lib, "tklFindSubString", NORVIK50_METHOD, args, 7, &result, &err) == 0);
  CHECK(norvik50_value_get_integer(result, &i) == 0 && i == 6);
  CHECK(args[6] != NULL && StringIs(args[6], "C"));
  CHECK(args[3] == NULL && args[4] == NULL && args[5] == NULL);
  CHECK(norvik50_value_get_integer(args[2], &i) == 0 && i == 4);
  norvik50_value_free(result);
  result = NULL;
  {
    int k;
    for (k = 0; k < 7; ++k) norvik50_value_free(args[k]);
  }

  /* Property get and let, and a let with the wrong form. */
  args[0] = Utf8("Software\\Norvik50\\CTest");
  CHECK(norvik50_invoke(lib, "tklRegKey", NORVIK50_PROPERTYLET, args, 1, NULL, &err) == 0);
  CHECK(norvik50_invoke(lib, "tklRegKey", NORVIK50_PROPERTYGET, NULL, 0, &result, &err) == 0);
  CHECK(StringIs(result, "Software\\Norvik50\\CTest"));
  norvik50_value_free(result);
  result = NULL;
  CHECK(norvik50_invoke(lib, "tklRegKey", NORVIK50_METHOD, NULL, 0, &result, &err) == 438);
  CHECK(norvik50_invoke(lib, "tklVal", NORVIK50_PROPERTYLET, args, 1, &result, &err) == 438);
  CHECK(norvik50_invoke(lib, "tklVal", 8, args, 1, &result, &err) == 5);
  norvik50_value_free(args[0]);
  CHECK(result == NULL);
  norvik50_error_clear(&err);
}

static void TestBadCalls(norvik50_lib* lib) {
  norvik50_error err = NORVIK50_ERROR_INIT;
  norvik50_value* result = NULL;
  norvik50_value* args[3] = {NULL};
  norvik50_value* bad = NULL;

  CHECK(norvik50_invoke(lib, "tklNoSuchMember", NORVIK50_METHOD, NULL, 0, &result, &err) == 438);
  CHECK(err.number == 438 && err.source != NULL);
  CHECK(norvik50_invoke(lib, NULL, NORVIK50_METHOD, NULL, 0, &result, &err) == 5);
  CHECK(norvik50_invoke(lib, "tklVal", NORVIK50_METHOD, NULL, 1, &result, &err) == 5);
  /* Missing required argument, too many arguments. */
  CHECK(norvik50_invoke(lib, "tklVal", NORVIK50_METHOD, NULL, 0, &result, &err) == 449);
  args[0] = Utf8("1");
  args[1] = Utf8("2");
  CHECK(norvik50_invoke(lib, "tklVal", NORVIK50_METHOD, args, 2, &result, &err) == 450);
  /* A value of the wrong type: an array where a String is declared. */
  norvik50_value_free(args[0]);
  CHECK(norvik50_value_new_array(NORVIK50_VT_VARIANT, 0, 2, &args[0]) == 0);
  CHECK(norvik50_invoke(lib, "tklVal", NORVIK50_METHOD, args, 1, &result, &err) == 13);
  CHECK(result == NULL);
  /* The failed call left the arguments alone. */
  CHECK(norvik50_value_type(args[0]) == (NORVIK50_VT_ARRAY | NORVIK50_VT_VARIANT));
  norvik50_value_free(args[0]);
  norvik50_value_free(args[1]);
  /* Text that is not UTF-8: a lone continuation byte, an overlong form,
   * an encoded surrogate. */
  CHECK(norvik50_value_new_utf8("a\x80", (size_t)-1, &bad) == 5 && bad == NULL);
  CHECK(norvik50_value_new_utf8("\xC0\xAF", 2, &bad) == 5 && bad == NULL);
  CHECK(norvik50_value_new_utf8("\xED\xA0\x80", 3, &bad) == 5 && bad == NULL);
  CHECK(norvik50_set_host_application("\xFF", NULL) == 5);
  norvik50_error_clear(&err);
}

static void TestValues(void) {
  static const uint16_t units[] = {0x48, 0xD800, 0x69}; /* unpaired surrogate kept */
  const uint16_t* read = NULL;
  size_t length = 0;
  norvik50_value* v = NULL;
  norvik50_value* item = NULL;
  int64_t scaled = 0;
  uint32_t hi = 0;
  uint64_t lo = 0;
  uint8_t scale = 0;
  int negative = 0;
  int16_t b = 0;
  double serial = 0;
  int32_t lower = 0;
  size_t count = 0;
  int32_t n = 0;
  uintptr_t id1 = 0, id2 = 0;
  const char* name = NULL;

  v = norvik50_value_new_string16(units, 3);
  CHECK(norvik50_value_get_string16(v, &read, &length) == 0 && length == 3 && read[1] == 0xD800);
  norvik50_value_free(v);

  v = norvik50_value_new_currency(125000);
  CHECK(norvik50_value_type(v) == NORVIK50_VT_CURRENCY);
  CHECK(norvik50_value_get_currency(v, &scaled) == 0 && scaled == 125000);
  norvik50_value_free(v);

  v = norvik50_value_new_boolean(7);
  CHECK(norvik50_value_get_boolean(v, &b) == 0 && b == -1);
  norvik50_value_free(v);

  CHECK(norvik50_value_new_decimal(0, 150, 2, 1, &v) == 0);
  CHECK(norvik50_value_get_decimal(v, &hi, &lo, &scale, &negative) == 0 && lo == 150 &&
        scale == 2 && negative == 1);
  norvik50_value_free(v);
  CHECK(norvik50_value_new_decimal(0, 1, 29, 0, &v) == 5);

  CHECK(norvik50_value_new_date(45356.5, &v) == 0);
  CHECK(norvik50_value_get_date(v, &serial) == 0 && serial == 45356.5);
  norvik50_value_free(v);
  CHECK(norvik50_value_new_date(3e6, &v) == 6);
  CHECK(norvik50_value_new_date(NAN, &v) == 6);

  /* Arrays: bounds, typed elements, unbounded. */
  CHECK(norvik50_value_new_array(NORVIK50_VT_LONG, 1, 2, &v) == 0);
  CHECK(norvik50_array_bounds(v, &lower, &count) == 0 && lower == 1 && count == 2);
  item = Utf8("42");
  CHECK(norvik50_array_set(v, 2, item) == 0); /* converted to the element type */
  norvik50_value_free(item);
  CHECK(norvik50_array_get(v, 2, &item) == 0 && norvik50_value_get_long(item, &n) == 0 && n == 42);
  norvik50_value_free(item);
  CHECK(norvik50_array_get(v, 3, &item) == 9);
  CHECK(norvik50_array_get(v, 0, &item) == 9);
  norvik50_value_free(v);
  CHECK(norvik50_value_new_unbounded_array(NORVIK50_VT_STRING, &v) == 0);
  CHECK(norvik50_array_bounds(v, &lower, &count) == 9);
  norvik50_value_free(v);
  CHECK(norvik50_value_new_array(NORVIK50_VT_RECORD, 0, 1, &v) == 5);
  CHECK(norvik50_value_new_array(NORVIK50_VT_VARIANT, 2147483647, 2, &v) == 5);

  /* Records. */
  CHECK(norvik50_value_new_record("typFileInfo", &v) == 0);
  item = Utf8("C");
  CHECK(norvik50_record_set(v, "lpDrive", item) == 0);
  CHECK(norvik50_record_set(v, "lpDrive", item) == 0); /* replaces, no second field */
  norvik50_value_free(item);
  CHECK(norvik50_record_field_count(v, &count) == 0 && count == 1);
  CHECK(norvik50_record_field(v, 0, &name, &item) == 0 && strcmp(name, "lpDrive") == 0);
  CHECK(StringIs(item, "C"));
  norvik50_value_free(item);
  CHECK(norvik50_record_field(v, 1, &name, &item) == 9);
  CHECK(norvik50_record_type(v, &name) == 0 && strcmp(name, "typFileInfo") == 0);
  norvik50_value_free(v);

  /* Objects: a collection shared by copies, Nothing. */
  v = norvik50_value_new_collection();
  item = norvik50_value_copy(v);
  CHECK(norvik50_object_id(v, &id1) == 0 && norvik50_object_id(item, &id2) == 0 && id1 == id2);
  {
    norvik50_value* x = norvik50_value_new_long(5);
    CHECK(norvik50_collection_add(item, x) == 0);
    norvik50_value_free(x);
  }
  CHECK(norvik50_collection_count(v, &n) == 0 && n == 1);
  norvik50_value_free(item);
  CHECK(norvik50_collection_item(v, 2, &item) == 9);
  norvik50_value_free(v);
  v = norvik50_value_new_nothing();
  CHECK(norvik50_object_id(v, &id1) == 0 && id1 == 0);
  CHECK(norvik50_collection_count(v, &n) == 13);
  norvik50_value_free(v);

  /* NULL everywhere is an error, not a crash. */
  CHECK(norvik50_value_get_double(NULL, &serial) == 91);
  CHECK(norvik50_value_type(NULL) == NORVIK50_VT_EMPTY);
  CHECK(norvik50_value_copy(NULL) == NULL);
  norvik50_value_free(NULL);
}

static void TestMemberTable(void) {
  size_t count = norvik50_member_count();
  size_t m, found = (size_t)-1;
  norvik50_member member;
  norvik50_param param;
  int16_t i = 0;
  CHECK(count > 50);
  for (m = 0; m < count; ++m) {
    CHECK(norvik50_member_get(m, &member) == 0);
    if (strcmp(member.name, "tklFindSubString") == 0) found = m;
  }
  CHECK(norvik50_member_get(count, &member) == 9);
  CHECK(found != (size_t)-1);
  if (found == (size_t)-1) return;
  CHECK(norvik50_member_get(found, &member) == 0);
  CHECK(member.how == NORVIK50_METHOD && member.result_type == NORVIK50_VT_INTEGER &&
        member.param_count == 7);
  CHECK(norvik50_member_param(found, 0, &param) == 0 && strcmp(param.name, "sSource") == 0 &&
        param.type == NORVIK50_VT_STRING && !param.by_ref && !param.optional &&
        param.default_value == NULL);
  CHECK(norvik50_member_param(found, 2, &param) == 0 && strcmp(param.name, "iStartSearch") == 0 &&
        param.by_ref && param.optional);
  CHECK(norvik50_value_get_integer(param.default_value, &i) == 0 && i == 1);
  CHECK(norvik50_member_param(found, 7, &param) == 9);
}

static void TestDialogs(norvik50_lib* lib) {
  norvik50_error err = NORVIK50_ERROR_INIT;
  norvik50_value* args[2];
  norvik50_value* result = NULL;
  int32_t answer = -1;
  /* Headless: the message box answers at once as failed (10). */
  CHECK(norvik50_set_dialogs(NORVIK50_DIALOGS_HEADLESS, &err) == 0);
  CHECK(norvik50_set_dialogs(7, &err) == 5);
  args[0] = Utf8("Prompt");
  args[1] = Utf8("Detail");
  CHECK(norvik50_invoke(lib, "tklMsgBox", NORVIK50_METHOD, args, 2, &result, &err) == 0);
  CHECK(norvik50_value_get_long(result, &answer) == 0 && answer == 10);
  norvik50_value_free(result);
  norvik50_value_free(args[0]);
  norvik50_value_free(args[1]);
  norvik50_error_clear(&err);
}

int main(void) {
  norvik50_lib* lib = NULL;
  CHECK(norvik50_version() != NULL && strlen(norvik50_version()) >= 5);
  CHECK(norvik50_set_host_application("ctest", "C test") == 0);
  TestLifecycle();
  if (norvik50_lib_new(&lib, NULL) != 0) {
    fprintf(stderr, "cannot create the library object\n");
    return 1;
  }
  TestCalls(lib);
  TestBadCalls(lib);
  TestValues();
  TestMemberTable();
  TestDialogs(lib);
  CHECK(norvik50_lib_free(lib) == 0);
  printf("%d passed, %d failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}
