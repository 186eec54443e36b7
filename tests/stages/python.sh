# python: the Python package, installed, and what pip builds
need mypy pybind11-dev python3-dev python3-pip python3-pybind11 python3-pytest python3-setuptools \
  python3-wheel
python_tests python/tests --ignore python/tests/scale
# shellcheck disable=SC2154  # python_tests sets it
MYPYPATH=${package%/*} mypy --strict --python-executable /usr/bin/python3 \
  --cache-dir build/python/mypy "$package" python/tests/typed_client.py

# By pip, with nothing from the network.
rm -rf build/python/pip
/usr/bin/python3 -m pip install --quiet --no-index --no-build-isolation --no-deps \
  --target build/python/pip ./python
PYTHONPATH=$PWD/build/python/pip /usr/bin/python3 -m pytest -q -p no:cacheprovider python/tests \
  -k "samples or errors"
