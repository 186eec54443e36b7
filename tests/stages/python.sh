# python: the Python package, installed, and what pip builds
need mypy pybind11-dev python3-dev python3-pip python3-pybind11 python3-pytest python3-setuptools \
  python3-wheel
configure dev
cmake --build build/dev --target typescout_cli typescout_write_samples
rm -rf build/python/{samples,prefix,pip}
build/dev/tests/typescout_write_samples build/python/samples
export TYPESCOUT_PROGRAM=$PWD/build/dev/typescout TYPESCOUT_SAMPLES=$PWD/build/python/samples

# By CMake.
configure python
cmake --build build/python
cmake --install build/python --prefix build/python/prefix >/dev/null
package=$(dirname "$(find "$PWD/build/python/prefix" -name __init__.py)")
PYTHONPATH=${package%/*} /usr/bin/python3 -m pytest -q -p no:cacheprovider python/tests \
  --ignore python/tests/scale
MYPYPATH=${package%/*} mypy --strict --python-executable /usr/bin/python3 \
  --cache-dir build/python/mypy "$package" python/tests/typed_client.py

# By pip, with nothing from the network.
/usr/bin/python3 -m pip install --quiet --no-index --no-build-isolation --no-deps \
  --target build/python/pip ./python
PYTHONPATH=$PWD/build/python/pip /usr/bin/python3 -m pytest -q -p no:cacheprovider python/tests \
  -k "samples or errors"
