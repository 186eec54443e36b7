# valgrind: nothing is read before it is written, nothing is leaked
need valgrind
configure dev
cmake --build build/dev
# The tests' own operator new, by which memory runs out, stays in place (somalloc).
each_test build/dev valgrind --quiet --leak-check=full --error-exitcode=1 \
  --suppressions=tests/valgrind.supp --soname-synonyms=somalloc=nouserintercepts
