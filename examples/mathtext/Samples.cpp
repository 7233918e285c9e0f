// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

#include "examples/mathtext/Samples.h"

namespace mathtext {

namespace {

constexpr Sample COMMANDS[] = {
    {"bold", L"plain and \\b bold", L"Bold type from here on."},
    {"italic", L"plain and \\i italic", L"Italic type from here on."},
    {"underline", L"plain and \\ul underlined", L"A line below the text."},
    {"strike", L"plain and \\strike struck out", L"A line through the text."},
    {"plain", L"\\b\\i\\ul all three\\plain , none", L"Ends bold, italic and both lines."},
    {"face", L"sans, \\f\"DejaVu Serif\"serif, \\f\"Shared Stroke\"stroked",
     L"Changes the face; symbol sets are faces, too."},
    {"size", L"100 \\fs150 150 \\fs50 75", L"Changes the height, in percent of what it is."},
    {"up", L"E = mc\\up40\\fs60 2", L"Raises what follows, in percent of the height."},
    {"down", L"H{\\dn20\\fs60 2}O", L"Lowers what follows, here until the brace."},
    {"braces", L"one {\\b two {\\i three} two} one", L"Save and restore all attributes."},
    {"positions", L"x\\sp1{\\dn25\\fs60 i}\\rp1{\\up40\\fs60 2} + 1",
     L"Keep the place of the pen, and return to it."},
    {"words",
     L"\\black black \\blue blue \\green green \\cyan cyan \\red red\n"
     L"\\magenta magenta \\yellow yellow \\gray gray \\white white",
     L"The nine words for colors; green is the pure one.", true},
    {"color", L"\\color(SteelBlue)SteelBlue \\color(#d94801)#d94801 \\color(0,109,44)0,109,44",
     L"Any color: a name of CSS, hexadecimal digits or numbers."},
    {"channels", L"\\rgbr217 red \\rgbg160 green \\rgbb40 blue \\rgba90 alpha",
     L"Sets one channel of the color from 0 to 255."},
    {"line", L"right\\line(120,0,right)\\line(0,60,right)", L"A segment from the end of the text."},
    {"line-left", L"left\\line(-80,40,left)", L"A segment from where the text begins."},
    {"line-top", L"x\\line(55,0,top) = 3", L"A segment from the top left corner of the text."},
    {"line-bottom", L"bottom\\line(300,0,bottom)", L"A segment from the bottom left corner."},
    {"substring", L"from \\ssbeg(300,0,right,baseline)1\n250\nmany\\ssend  m",
     L"A text of its own lines in a field, justified to the right."},
    {"substring-top", L"top \\ssbeg(0,100,center,top)a\nbcd\\ssend  after",
     L"A sub-string whose top is 100 percent above the baseline."},
    {"substring-bottom", L"\\ssbeg(400,0,center,bottom)a\nb\\ssend \\line(-400,0,right) bottom",
     L"A sub-string that stands on the baseline, centered in a wide field."},
    {"date", L"\\date", L"The date."},
    {"time", L"\\time", L"The time of day."},
    {"picture", L"\\dt(\"dddd, d MMMM yyyy, h:mm tt\")", L"Date and time by a picture."},
    {"code", L"59.9\\a176 N, \\a0x3B1  = 2\\a0x3C0/3", L"Characters by their numbers."},
    {"escapes", L"C:\\\\data \\{1, 2\\}", L"A backslash before these stands for themselves."},
    {"break", L"first line\nsecond line\n\nbelow an empty one", L"A line break begins a new line."},
    {"tab", L"Oslo\t59.9\nReykjavík\t64.1", L"A tab leads to the next stop."},
};

constexpr Sample SCRIPTS[] = {
    {"latin", L"{\\b Reykjavík} \\fs70 Þingvellir, Łódź, Việt Nam", L"Latin"},
    {"greek", L"{\\b Αθήνα} \\fs70 Θεσσαλονίκη, Πάτρα", L"Greek"},
    {"cyrillic", L"{\\b Москва} \\fs70 Київ, Благоевград, Тӱвӓ", L"Cyrillic"},
    {"arabic", L"{\\b القاهرة} \\fs70 بغداد، الرباط (1956)", L"Arabic: joins, from right to left"},
    {"hebrew", L"{\\b ירושלים} \\fs70 תל אביב, חיפה (1909)", L"Hebrew: from right to left"},
    {"devanagari", L"{\\b नई दिल्ली} \\fs70 काठमाण्डू, हिन्दी", L"Devanagari: reorders and joins"},
    {"chinese", L"{\\fs120 北京} \\fs70 上海，广州，成都", L"Chinese"},
    {"japanese", L"{\\fs120 東京} \\fs70 とうきょう、オオサカ", L"Japanese"},
    {"korean", L"{\\b 서울} \\fs70 부산, 평양", L"Korean"},
    {"thai", L"{\\b กรุงเทพฯ} \\fs70 เชียงใหม่", L"Thai"},
    {"georgian", L"{\\b თბილისი} \\fs70 ქუთაისი, ბათუმი", L"Georgian"},
    {"armenian", L"{\\b Երևան} \\fs70 Գյումրի, Վանաձոր", L"Armenian"},
    {"emoji", L"{\\b 🌍} \\fs70 🌋 🗻 ⚓ ☂", L"Signs and emoji, in one color"},
};

}  // namespace

std::span<const Sample> CommandSamples() {
  return COMMANDS;
}

std::span<const Sample> ScriptSamples() {
  return SCRIPTS;
}

}  // namespace mathtext
