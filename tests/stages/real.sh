# real: files made by other people's programs
configure dev
cmake --build build/dev --target typescout_cli
tests/real/run.sh build/dev
