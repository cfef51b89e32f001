#pragma once

#include <gst/gst.h>

#include <memory>

// What GStreamer counts references of, given back when its owner goes.
struct GstUnref
{
    void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
    void operator()(GstSample* sample) const { gst_sample_unref(sample); }
    void operator()(gpointer object) const { gst_object_unref(object); }
};

struct GlibFree
{
    void operator()(char* text) const { g_free(text); }
    void operator()(GError* error) const { g_error_free(error); }
};

template <typename T> using GstHandle = std::unique_ptr<T, GstUnref>;
template <typename T> using GlibHandle = std::unique_ptr<T, GlibFree>;
