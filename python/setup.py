"""Builds the package for pip: the library by CMake, as a static one, the module by pybind11."""

import pathlib
import subprocess

from pybind11.setup_helpers import Pybind11Extension, build_ext
from setuptools import setup

PROJECT = pathlib.Path(__file__).resolve().parent.parent


class BuildWithLibrary(build_ext):
    """Builds the static library first."""

    def build_extension(self, ext):
        build = pathlib.Path(self.build_temp).resolve() / "library"
        subprocess.run(
            ["cmake", "-S", PROJECT, "-B", build, "-DCMAKE_BUILD_TYPE=Release"]
            + [f"-DTYPESCOUT_{option}=OFF" for option in ("CLI", "TESTS", "INSTALL", "WERROR")]
            + ["-DBUILD_SHARED_LIBS=OFF"],
            check=True,
        )
        subprocess.run(
            ["cmake", "--build", build, "--parallel", "--target", "typescout", "typescout_catalogue"], check=True
        )
        ext.extra_objects = [
            str(build / "catalogue" / "libtypescout_catalogue.a"),
            str(build / "libtypescout.a"),
        ]
        super().build_extension(ext)


setup(
    ext_modules=[
        Pybind11Extension(
            "typescout._native",
            sorted(str(file) for file in pathlib.Path("src").glob("*.cpp")),
            include_dirs=[str(PROJECT), str(PROJECT / "include")],
            libraries=["dl", "pthread"],
            cxx_std=20,
        )
    ],
    cmdclass={"build_ext": BuildWithLibrary},
)
