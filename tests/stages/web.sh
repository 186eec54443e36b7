# web: the JavaScript package in Node, the page in Chromium; left out where they cannot be had
command -v node >/dev/null || need nodejs
command -v npm >/dev/null || need npm
if ! need chromium emscripten node-acorn; then
  echo "web: left out, since Chromium or Emscripten cannot be installed"
  exit 0
fi
configure web
cmake --build build/web
configure dev
cmake --build build/dev --target typescout_cli typescout_write_samples

tests=build/web/tests
mkdir -p "$tests"
cp web/tests/* "$tests"
npm install --prefix "$tests" --no-package-lock --no-audit --no-fund --silent
rm -rf "$tests/samples"
build/dev/tests/typescout_write_samples "$tests/samples"
rm -rf "$tests/typescout"
cp -r build/web/web/package "$tests/typescout"
"$tests/node_modules/.bin/tsc" --noEmit --strict --target esnext --module nodenext --lib esnext,dom \
  --skipLibCheck "$tests/types_test.ts"
node "$tests/package_test.mjs" build/web/web/package build/dev/typescout "$tests/samples"
node "$tests/page_test.mjs" build/web/web/page/index.html build/dev/typescout "$tests/samples" "$tests"
