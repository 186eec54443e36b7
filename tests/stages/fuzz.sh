# fuzz: each fuzz target for FUZZ_SECONDS (60); findings stay in build/fuzz/found
need clang
configure fuzz
cmake --build build/fuzz --target typescout_{write_seeds,fuzz_{heads,files,compound}}
build/fuzz/fuzz/typescout_write_seeds build/fuzz/seeds
mkdir -p build/fuzz/found build/fuzz/grown/{heads,files,compound}
export FUZZ_SECONDS=${FUZZ_SECONDS:-60}
# shellcheck disable=SC2016  # the inner shell expands these
printf '%s\n' heads files compound | xargs -P "$(nproc)" -I{} sh -c '
  build/fuzz/fuzz/typescout_fuzz_{} -max_total_time="$FUZZ_SECONDS" -max_len=60000 -timeout=10 \
    -artifact_prefix=build/fuzz/found/{}- -print_final_stats=1 \
    build/fuzz/grown/{} build/fuzz/seeds/{} fuzz/corpus/{} >build/fuzz/{}.log 2>&1 ||
    { tail -n 40 build/fuzz/{}.log; exit 255; }
  grep -E "Done|stat::number_of_executed_units" build/fuzz/{}.log | sed "s/^/{}: /"'
