/* Visibility of the component's public symbols. */
#ifndef ZEL_EXPORT_H_
#define ZEL_EXPORT_H_

#if defined(__GNUC__)
#define ZEL_API __attribute__((visibility("default")))
#else
#define ZEL_API
#endif

#endif /* ZEL_EXPORT_H_ */
