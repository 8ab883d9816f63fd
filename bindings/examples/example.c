#include <stdio.h>
#include <norvik50/norvik50.h>

int main(void) {
  norvik50_lib* lib = NULL;
  norvik50_error err = NORVIK50_ERROR_INIT;
  norvik50_value* args[5] = {NULL};
  norvik50_value* result = NULL;
  char* text = NULL;
  double amount = 0;

  if (norvik50_lib_new(&lib, &err) != 0) return 1;
  norvik50_value_new_utf8("1.234,56", (size_t)-1, &args[0]);  /* German text */
  if (norvik50_invoke(lib, "tklVal", NORVIK50_METHOD, args, 1, &result, &err) == 0) {
    norvik50_value_get_double(result, &amount);
    printf("%.2f\n", amount);                                   /* 1234.56 */
  }
  norvik50_value_free(result);
  norvik50_value_free(args[0]);

  /* By reference: the parts land in args[2..4]. */
  norvik50_value_new_utf8("Invoice-2024-0042", (size_t)-1, &args[0]);
  norvik50_value_new_utf8("-", (size_t)-1, &args[1]);
  args[2] = norvik50_value_new_empty();
  args[3] = norvik50_value_new_empty();
  args[4] = norvik50_value_new_empty();
  if (norvik50_invoke(lib, "tklSeparateString", NORVIK50_METHOD, args, 5, NULL, &err) == 0 &&
      norvik50_value_get_utf8(args[4], &text, NULL) == 0) {
    printf("%s\n", text);                                       /* 2024-0042 */
    norvik50_free(text);
  }
  for (int i = 0; i < 5; ++i) norvik50_value_free(args[i]);

  if (norvik50_invoke(lib, "tklNoSuchMember", NORVIK50_METHOD, NULL, 0, NULL, &err) != 0) {
    printf("error %d: %s\n", err.number, err.description);     /* error 438: ... */
  }
  norvik50_error_clear(&err);
  norvik50_lib_free(lib);
  return 0;
}
