# scale: the examples for several machines: GNU parallel over ssh, Dask, a store with ranges
need openssh-client openssh-server parallel procps pybind11-dev python3-dev python3-distributed \
  python3-pybind11 python3-pytest
configure python
cmake --build build/python
cmake --install build/python --prefix build/python/prefix >/dev/null
configure dev
cmake --build build/dev --target typescout_cli typescout_write_samples
rm -rf build/python/samples
build/dev/tests/typescout_write_samples build/python/samples
package=$(dirname "$(find "$PWD/build/python/prefix" -name __init__.py)")
TYPESCOUT_PROGRAM=$PWD/build/dev/typescout TYPESCOUT_SAMPLES=$PWD/build/python/samples \
  PYTHONPATH=${package%/*} /usr/bin/python3 -m pytest -q -p no:cacheprovider python/tests/scale
