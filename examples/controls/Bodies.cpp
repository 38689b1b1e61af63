#include "Bodies.h"

namespace {
constexpr Body all[] = {
    {L"Sun", nullptr, Body::star, 1392700, 0},         {L"Mercury", L"Sun", Body::planet, 4879, 88},
    {L"Venus", L"Sun", Body::planet, 12104, 224.7},    {L"Earth", L"Sun", Body::planet, 12742, 365.3},
    {L"Moon", L"Earth", Body::moon, 3475, 27.3},       {L"Mars", L"Sun", Body::planet, 6779, 687},
    {L"Phobos", L"Mars", Body::moon, 22, 0.3},         {L"Deimos", L"Mars", Body::moon, 12, 1.3},
    {L"Ceres", L"Sun", Body::dwarf, 939, 1682},        {L"Jupiter", L"Sun", Body::planet, 139820, 4333},
    {L"Amalthea", L"Jupiter", Body::moon, 167, 0.5},   {L"Io", L"Jupiter", Body::moon, 3643, 1.8},
    {L"Europa", L"Jupiter", Body::moon, 3122, 3.6},    {L"Ganymede", L"Jupiter", Body::moon, 5268, 7.2},
    {L"Callisto", L"Jupiter", Body::moon, 4821, 16.7}, {L"Himalia", L"Jupiter", Body::moon, 140, 250.6},
    {L"Saturn", L"Sun", Body::planet, 116460, 10756},  {L"Mimas", L"Saturn", Body::moon, 396, 0.9},
    {L"Enceladus", L"Saturn", Body::moon, 504, 1.4},   {L"Tethys", L"Saturn", Body::moon, 1062, 1.9},
    {L"Dione", L"Saturn", Body::moon, 1123, 2.7},      {L"Rhea", L"Saturn", Body::moon, 1528, 4.5},
    {L"Titan", L"Saturn", Body::moon, 5150, 15.9},     {L"Iapetus", L"Saturn", Body::moon, 1469, 79.3},
    {L"Uranus", L"Sun", Body::planet, 50724, 30687},   {L"Miranda", L"Uranus", Body::moon, 472, 1.4},
    {L"Ariel", L"Uranus", Body::moon, 1158, 2.5},      {L"Umbriel", L"Uranus", Body::moon, 1169, 4.1},
    {L"Titania", L"Uranus", Body::moon, 1577, 8.7},    {L"Oberon", L"Uranus", Body::moon, 1523, 13.5},
    {L"Neptune", L"Sun", Body::planet, 49244, 60190},  {L"Proteus", L"Neptune", Body::moon, 420, 1.1},
    {L"Triton", L"Neptune", Body::moon, 2707, 5.9},    {L"Pluto", L"Sun", Body::dwarf, 2377, 90560},
    {L"Charon", L"Pluto", Body::moon, 1212, 6.4},      {L"Haumea", L"Sun", Body::dwarf, 1595, 103774},
    {L"Makemake", L"Sun", Body::dwarf, 1430, 111845},  {L"Eris", L"Sun", Body::dwarf, 2326, 204199},
};
} // namespace

std::span<const Body> bodies() { return all; }
