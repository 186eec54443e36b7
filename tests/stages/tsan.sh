# tsan: the module's tests under the thread sanitizer
need clang
configure tsan
cmake --build build/tsan --target typescout_module_tests
ctest --preset tsan -R '^module_tests$'
