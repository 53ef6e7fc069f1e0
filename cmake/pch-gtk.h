#pragma once
// The shared precompiled header of what draws: the core's, gtkmm and libadwaita.

#include <adwaita.h>
#include <gtkmm/applicationwindow.h>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/entry.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>
#include <gtkmm/snapshot.h>
#include <gtkmm/widget.h>

#include "cmake/pch-core.h"
