# tsan: the module's and the program's tests under the thread sanitizer
need clang
configure tsan
cmake --build build/tsan --target typescout_module_tests typescout_cli typescout_stub_module
ctest --preset tsan -R '^(module_tests|cli_program)$'
