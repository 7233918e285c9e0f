# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""Conan 2 recipe that builds the tree it lies in: conan create packaging/conan"""

import os
import pathlib
import re

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


class SharedRecipe(ConanFile):
    name = "shared"
    description = "Base library of scientific mapping and graphing applications"
    license = "MIT"
    topics = ("cartography", "geometry", "polygon-clipping", "text-encoding", "serialization")
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False]}
    default_options = {"shared": True, "fPIC": True}

    def set_version(self):
        header = (ROOT / "shared" / "Version.h").read_text(encoding="utf-8")
        self.version = re.search(r'SHARED_VERSION_STRING "(.+)"', header)[1]

    def export_sources(self):
        for pattern in ("CMakeLists.txt", "LICENSE", "*.md", "cmake/*", "packaging/*", "shared/*", "tools/*"):
            copy(self, pattern, src=str(ROOT), dst=self.export_sources_folder)

    def config_options(self):
        if self.settings.os == "Windows":
            del self.options.fPIC

    def configure(self):
        if self.options.shared:
            self.options.rm_safe("fPIC")

    def validate(self):
        check_min_cppstd(self, 20)
        if self.settings.arch != "x86_64":
            raise ConanInvalidConfiguration("shared is made for x86-64")

    def layout(self):
        cmake_layout(self)

    def requirements(self):
        self.requires("boost/[>=1.81 <2]", options={"header_only": True})
        if self.settings.os == "Linux":
            self.requires("icu/[>=72]")
            # Their headers; programs that lay text out load the libraries of the system.
            self.requires("freetype/[>=2.12 <3]")
            self.requires("fontconfig/[>=2.14 <3]")
            self.requires("harfbuzz/[>=6]")
            self.requires("fribidi/[>=1.0.8]")

    def generate(self):
        toolchain = CMakeToolchain(self)
        for option in ("TESTS", "EXAMPLES", "BENCH"):
            toolchain.cache_variables[f"SHARED_BUILD_{option}"] = False
        toolchain.generate()
        CMakeDeps(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        copy(self, "LICENSE", src=self.source_folder, dst=os.path.join(self.package_folder, "licenses"))
        CMake(self).install()

    def package_info(self):
        # The package's own CMake files serve; Conan's would not know where Colors.ini lies.
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs = [os.path.join("lib", "cmake", "Shared")]
        self.cpp_info.libs = ["shared"]
