# Outside libraries, each as one imported target. Their headers stay inside platform/
# (fmt and nlohmann-json may be used anywhere).
find_package(PkgConfig REQUIRED)
pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET cairo)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-2.0)
pkg_check_modules(ICU REQUIRED IMPORTED_TARGET icu-uc icu-i18n)
pkg_check_modules(ISAL REQUIRED IMPORTED_TARGET libisal)
pkg_check_modules(PIXBUF REQUIRED IMPORTED_TARGET gdk-pixbuf-2.0)
pkg_check_modules(PNG REQUIRED IMPORTED_TARGET libpng)
pkg_check_modules(POPPLER REQUIRED IMPORTED_TARGET poppler-glib)
pkg_check_modules(QPDF REQUIRED IMPORTED_TARGET libqpdf)
# Our code never names qpdf's old pointer class, which this says to its headers.
target_compile_definitions(PkgConfig::QPDF INTERFACE POINTERHOLDER_TRANSITION=4)
pkg_check_modules(TESSERACT REQUIRED IMPORTED_TARGET tesseract lept)
pkg_check_modules(TURBOJPEG REQUIRED IMPORTED_TARGET libturbojpeg)
pkg_check_modules(VIPS REQUIRED IMPORTED_TARGET vips-cpp)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(Threads REQUIRED)
