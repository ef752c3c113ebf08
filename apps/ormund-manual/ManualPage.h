// Fills the manual's texts in. They are plain HTML with elements of our own, all named "x-...":
//
//   <x-control tag="13">retrigger action</x-control>  a control by the words of its hint
//   <x-label>RETRIG</x-label>                         words that are printed on the panel
//   <x-key note="36"/>                                a key's name
//   <x-zone of="pattern" mode="0"/>                   first and last key of a zone
//   <x-number of="patterns"/>                         a count
//   <x-range tag="10"/>  <x-default tag="10"/>        values as the hint line shows them
//   <x-choices tag="330"/>                            the entries of a list
//   <x-table of="scales"/>                            a table
//   <x-picture name="pitch">its caption</x-picture>   a picture of the panel
//   <x-contents/>  <x-chapters/>  <x-version/>        in the page's frame alone
#pragma once

#include "apps/ormund-manual/PanelPictures.h"

#include <map>
#include <string>

namespace ormund {

class ManualPage {
public:
    ManualPage(std::map<std::string, PanelPicture> panelPictures, std::string programVersion);

    // The whole page of `folder`: page.html with the chapters, its other *.html files by name.
    // Throws std::runtime_error for whatever is not true: a control, a hint, a table or a picture
    // that is not there, a chapter without a heading.
    std::string fill(const std::string& folder);

private:
    using Attributes = std::map<std::string, std::string>;

    std::string expand(const std::string& text);
    std::string element(const std::string& name, const Attributes& given, const std::string& inner);
    std::string control(const Attributes& given, const std::string& inner) const;
    std::string picture(const Attributes& given, const std::string& inner);

    std::map<std::string, PanelPicture> pictures;
    std::string version;
    std::string chapters; // filled in
    std::string contents;
};

} // namespace ormund
