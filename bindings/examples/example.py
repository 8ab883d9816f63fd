import norvik50

lib = norvik50.LIB()
print(lib.tklVal("1.234,56"))                     # 1234.56 in a German locale

before, term, after = norvik50.Ref(""), norvik50.Ref(""), norvik50.Ref("")
lib.tklSeparateString("Invoice-2024-0042", "-", before, term, after)
print(after.value)                                # 2024-0042
print(lib.tklFindSubString("a;b;c", ";", bIgnoreCase=False))   # 2

try:
    lib.call("tklNoSuchMember")
except norvik50.Error as e:
    print("error", e.number, e.description)       # error 438 Object doesn't ...
