/* A station as the host hands it over. Usable from C and C++; the order of the fields is part of the binary
 * interface. */
#ifndef ZEL_STATION_PROFILE_H_
#define ZEL_STATION_PROFILE_H_

/* NOLINTNEXTLINE(modernize-use-using): the header serves C as well. */
typedef struct StationProfile_Type {
  double Lat; /* latitude, decimal degrees, north positive */
  double Lon; /* longitude, decimal degrees, east positive */
  float
      AntHt; /* antenna height above ground, metres; the component keeps whole metres, rounded half to even */
} StationProfile_Type;

#endif /* ZEL_STATION_PROFILE_H_ */
