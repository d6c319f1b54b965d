// SPDX-License-Identifier: MIT
#include "formats/cairo_picture.h"

#include <cairo-svg.h>
#include <fontconfig/fontconfig.h>

#include "io/tool_error.h"

namespace quarnel::tool {
namespace {

cairo_status_t Append(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

// Text drawing fills process-wide font caches; a picture is drawn once per
// run, so they are emptied afterwards and leak checkers see a clean exit.
void ReleaseFontCaches() {
    cairo_debug_reset_static_data();
    FcFini();
}

void Check(cairo_status_t status, const std::string& what) {
    if (status != CAIRO_STATUS_SUCCESS)
        throw ToolError(kExitCantCreate, "cannot draw the " + what + ": " + cairo_status_to_string(status));
}

}  // namespace

std::string RenderPng(int width, int height, const DrawOnSurface& draw, const std::string& what) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    draw(surface);
    std::string bytes;
    const cairo_status_t status = cairo_surface_write_to_png_stream(surface, Append, &bytes);
    cairo_surface_destroy(surface);
    ReleaseFontCaches();
    Check(status, what);
    return bytes;
}

std::string RenderSvg(int width, int height, const DrawOnSurface& draw, const std::string& what) {
    std::string bytes;
    cairo_surface_t* surface = cairo_svg_surface_create_for_stream(Append, &bytes, width, height);
    draw(surface);
    cairo_surface_finish(surface);
    const cairo_status_t status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
    ReleaseFontCaches();
    Check(status, what);
    return bytes;
}

}  // namespace quarnel::tool
