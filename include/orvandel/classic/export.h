#pragma once

// What the shared library hands to hosts. Everything else stays hidden.
// ORVANDEL_BUILDING is set while the library itself is compiled, ORVANDEL_STATIC by whoever links
// its object files directly.
#if defined(_WIN32)
#if defined(ORVANDEL_BUILDING)
#define ORVANDEL_API __declspec(dllexport)
#elif defined(ORVANDEL_STATIC)
#define ORVANDEL_API
#else
#define ORVANDEL_API __declspec(dllimport)
#endif
#else
#define ORVANDEL_API __attribute__((visibility("default")))
#endif

// On Windows the search object and what it holds by value are packed to 4 bytes, as hosts there expect.
#if defined(_WIN32)
#define ORVANDEL_PACKED_LAYOUT
#endif
