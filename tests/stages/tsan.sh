# tsan: the module's and the program's tests under the thread sanitizer
need clang
configure tsan
cmake --build build/tsan --target typescout_{module_tests,cli,stub_module,write_samples}
# The program ends without waiting for a thread that is held up by a slow file.
TSAN_OPTIONS=report_thread_leaks=0 ctest --preset tsan -R '^(module_tests|cli_program)$'
