# valgrind: nothing is read before it is written, nothing is leaked
need valgrind
configure dev
cmake --build build/dev
# The tests' own operator new, by which memory runs out, stays in place (somalloc).
each_test build/dev valgrind --quiet --leak-check=full --error-exitcode=1 \
  --suppressions=tests/valgrind.supp --soname-synonyms=somalloc=nouserintercepts
# The program, with several threads, on every seed of the fuzz targets. It ends with 0 or 1.
build/dev/tests/typescout_write_samples --seeds build/dev/seeds
valgrind --quiet --leak-check=full --error-exitcode=99 build/dev/typescout --jobs 4 --recursive \
  build/dev/seeds >/dev/null || [ $? -eq 1 ]
