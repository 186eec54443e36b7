# asan: the same with clang, under the address and undefined-behaviour sanitizers
need clang
build_and_test asan
