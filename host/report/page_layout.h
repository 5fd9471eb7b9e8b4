// Where the parts of a report's page are. Plain C++; millimetres from the sheet's left top corner.
#pragma once

#include <cstddef>
#include <span>

namespace zel::host {

struct PageBox {
  double left = 0, top = 0, width = 0, height = 0;

  double right() const { return left + width; }
  double bottom() const { return top + height; }
  friend bool operator==(const PageBox&, const PageBox&) = default;
};

struct Sheet {
  double width = 210, height = 297;
};

inline constexpr double kPageMargin = 15;  // on all four sides
inline constexpr double kFootHeight = 6;   // the foot, above the lower margin's line
inline constexpr double kBlockGap = 3;     // between the parts

// Within the margins, above the foot.
PageBox contentOf(const Sheet& sheet);
PageBox footOf(const Sheet& sheet);

// How tall the texts of a link's page are.
struct PartHeights {
  double head = 0;      // title and stations
  double values = 0;    // the taller of the two columns
  double captions = 0;  // below a picture, each
  double notes = 0;     // all of them
};

// The pictures take what the texts leave, within limits; the notes what is left then. On a sheet that lies on
// its longer side map and profile stand beside each other, else one above the other.
struct LinkPageLayout {
  PageBox head, map, mapCaption, plot, plotCaption, values, notes;
};
LinkPageLayout linkPageLayout(const Sheet& sheet, const PartHeights& heights);

// Of notes with these heights, how many have room one below the other; where not all have, a line that counts
// the others has, too.
std::size_t notesThatFit(std::span<const double> heights, double room, double line);

// Rows of the table of links that have room on a page, at least 1.
std::size_t rowsThatFit(double room, double row);

}  // namespace zel::host
