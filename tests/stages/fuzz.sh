# fuzz: whole calls, the document reader and the program's parsers, each for FUZZ_SECONDS (60); findings: build/fuzz/found
need clang
configure fuzz
[ -v targets ] || targets=(calls compound program)
cmake --build build/fuzz --target typescout_write_samples "${targets[@]/#/typescout_fuzz_}"
build/fuzz/tests/typescout_write_samples --seeds build/fuzz/seeds
python3 tests/modules/raw_files.py build/fuzz/seeds/camera_raw
python3 tests/modules/pdf_files.py build/fuzz/seeds/pdf_import
# What other people's programs wrote, when the real files are there.
for real in build/dev/real-modules/*.dng; do
  [ ! -f "$real" ] || cp "$real" build/fuzz/seeds/camera_raw
done
for real in build/dev/real-{files,modules}/*.pdf; do
  [ ! -f "$real" ] || cp "$real" build/fuzz/seeds/pdf_import
done
mkdir -p build/fuzz/found "${targets[@]/#/build/fuzz/grown/}" "${targets[@]/#/build/fuzz/seeds/}"
export FUZZ_SECONDS=${FUZZ_SECONDS:-60}
# shellcheck disable=SC2016  # the inner shell expands these
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} sh -c '
  build/fuzz/fuzz/typescout_fuzz_{} -max_total_time="$FUZZ_SECONDS" -max_len=60000 -timeout=10 \
    -artifact_prefix=build/fuzz/found/{}- -print_final_stats=1 \
    build/fuzz/grown/{} build/fuzz/seeds/{} fuzz/corpus/{} >build/fuzz/{}.log 2>&1 ||
    { tail -n 40 build/fuzz/{}.log; exit 255; }
  grep -E "Done|stat::number_of_executed_units" build/fuzz/{}.log | sed "s/^/{}: /"'
