#pragma once

#if !defined(_WIN32)
#define MULTIENTITY_API [[gnu::visibility("default")]]
#elif defined(MULTIENTITY_BUILDING_LIBRARY)
#define MULTIENTITY_API __declspec(dllexport)
#else
#define MULTIENTITY_API __declspec(dllimport)
#endif
