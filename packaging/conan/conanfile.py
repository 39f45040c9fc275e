import os

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy

required_conan_version = ">=2.0"


class ArvmuiConan(ConanFile):
    name = "arvmui"
    version = "1.0.0"
    description = "Multilingual user interface support for 64-bit Windows programs"
    license = "MIT"
    topics = ("windows", "localization", "i18n", "user-interface", "msi")
    package_type = "shared-library"
    settings = "os", "arch", "compiler", "build_type"

    @property
    def _source_root(self):
        return os.path.join(self.recipe_folder, os.pardir, os.pardir)

    def export_sources(self):
        for pattern in (
            "CMakeLists.txt",
            "CHANGELOG.md",
            "LICENSE",
            "README.md",
            "bindings/*",
            "cmake/*",
            "docs/*",
            "include/*",
            "samples/*",
            "src/*",
            "templates/*",
            "translations/*",
        ):
            copy(self, pattern, src=self._source_root, dst=self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def package_id(self):
        # A C interface, with the C runtime inside the DLL.
        del self.info.settings.compiler
        del self.info.settings.build_type

    def validate(self):
        if self.settings.os != "Windows" or self.settings.arch != "x86_64":
            raise ConanInvalidConfiguration("arvmui is for 64-bit Windows only")

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["ARVMUI_BUILD_TESTS"] = False
        toolchain.cache_variables["ARVMUI_BUILD_SAMPLES"] = False
        toolchain.cache_variables["ARVMUI_BUILD_TOOLS"] = False
        toolchain.cache_variables["ARVMUI_INSTALL"] = True
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        copy(self, "LICENSE", src=self.source_folder, dst=os.path.join(self.package_folder, "licenses"))
        cmake = CMake(self)
        cmake.install()

    def package_info(self):
        # The package's own arvmuiConfig.cmake, because it defines functions, too.
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs = [os.path.join("lib", "cmake", "arvmui")]
        self.cpp_info.set_property("pkg_config_name", "arvmui")
        self.cpp_info.libs = ["arvmui64"]
