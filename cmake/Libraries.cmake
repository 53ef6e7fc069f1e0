# Every library comes from a package that scripts/setup installs.

find_package(PkgConfig REQUIRED)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(Threads REQUIRED)

function(orvel_pkg name)
  pkg_check_modules(${name} REQUIRED IMPORTED_TARGET ${ARGN})
endfunction()

orvel_pkg(SQLITE sqlite3)
orvel_pkg(SODIUM libsodium)
orvel_pkg(NETTLE nettle)
orvel_pkg(ARCHIVE libarchive)
orvel_pkg(PLIST libplist-2.0)
orvel_pkg(GLIB glib-2.0 gio-2.0 gio-unix-2.0)
orvel_pkg(PIXBUF gdk-pixbuf-2.0)
orvel_pkg(SOUP libsoup-3.0)
orvel_pkg(GTK gtkmm-4.0 libadwaita-1)
orvel_pkg(X11 x11)
orvel_pkg(WEBKIT webkitgtk-6.0)
orvel_pkg(WEBPROCESS webkitgtk-web-process-extension-6.0)
