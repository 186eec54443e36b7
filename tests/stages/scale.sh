# scale: the examples for several machines: GNU parallel over ssh, Dask, a store with ranges
need openssh-client openssh-server parallel procps pybind11-dev python3-dev python3-distributed \
  python3-pybind11 python3-pytest
python_tests python/tests/scale
