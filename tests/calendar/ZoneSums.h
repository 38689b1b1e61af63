#pragma once

// Written by tools/zone-names --sums: for each zone a sum of what Python's zoneinfo knows of the changes of clocks from
// 2000 to 2022, without the years in which there are more than two, or other dates in the platform's tables.

namespace zones {
struct Sums {
    const char* name;
    unsigned leftOut; // A bit for each year, the lowest for 2000.
    unsigned sum;
};

// clang-format off
inline constexpr Sums zoneSums[] = {
    {"Africa/Cairo", 0x4400, 0x121faa02}, {"Africa/Casablanca", 0x7f000, 0xc27d7109},
    {"Africa/Johannesburg", 0x0, 0x4175f020}, {"Africa/Juba", 0x0, 0xf9bcf7e1}, {"Africa/Khartoum", 0x0, 0x130ed76d},
    {"Africa/Lagos", 0x0, 0x20baf810}, {"Africa/Nairobi", 0x0, 0x6230e830}, {"Africa/Sao_Tome", 0x0, 0x461218f3},
    {"Africa/Tripoli", 0x0, 0xeb975b1e}, {"Africa/Windhoek", 0x0, 0xed6377f1}, {"America/Adak", 0x0, 0x1a3a3a07},
    {"America/Anchorage", 0x0, 0x3e03ca49}, {"America/Araguaina", 0x0, 0x57ecf4cb},
    {"America/Asuncion", 0x0, 0xfcbf972}, {"America/Bahia", 0x0, 0xcc237cc9}, {"America/Bogota", 0x0, 0xc0f96041},
    {"America/Buenos_Aires", 0x1, 0x5d01f46d}, {"America/Cancun", 0x0, 0xfa0af467},
    {"America/Caracas", 0x0, 0x128027f5}, {"America/Cayenne", 0x0, 0x26f5061}, {"America/Chicago", 0x0, 0xd1220f73},
    {"America/Chihuahua", 0x0, 0x95817f33}, {"America/Cuiaba", 0x0, 0x1014cee0}, {"America/Denver", 0x0, 0xbf641b81},
    {"America/Godthab", 0x0, 0xb2c539f7}, {"America/Grand_Turk", 0x0, 0xddd7e431},
    {"America/Guatemala", 0x0, 0x65e61c13}, {"America/Halifax", 0x0, 0x958c7a58}, {"America/Havana", 0x0, 0xa794051},
    {"America/Indianapolis", 0x0, 0x565dc2e9}, {"America/La_Paz", 0x0, 0xe1b45851},
    {"America/Los_Angeles", 0x0, 0x46d5458e}, {"America/Mexico_City", 0x0, 0x82b741f6},
    {"America/Miquelon", 0x0, 0xbba08166}, {"America/Montevideo", 0x0, 0xb74ece89},
    {"America/New_York", 0x0, 0x50662a1b}, {"America/Phoenix", 0x0, 0x7f837021},
    {"America/Port-au-Prince", 0x0, 0x2831c975}, {"America/Punta_Arenas", 0x18000, 0xc78cc277},
    {"America/Regina", 0x0, 0xa03e6831}, {"America/Santiago", 0x0, 0x7834e0dc}, {"America/Sao_Paulo", 0x0, 0x5e799b07},
    {"America/St_Johns", 0x800, 0xc7c80490}, {"America/Tijuana", 0x0, 0x805d378},
    {"America/Whitehorse", 0x0, 0x44cc4248}, {"Asia/Almaty", 0x0, 0x54790c12}, {"Asia/Amman", 0x0, 0x2050311a},
    {"Asia/Baghdad", 0x0, 0x73c88f4b}, {"Asia/Baku", 0x0, 0x7bbeb5c9}, {"Asia/Bangkok", 0x0, 0xe51cc870},
    {"Asia/Barnaul", 0x0, 0x4080bccd}, {"Asia/Beirut", 0x0, 0xe4e66ee2}, {"Asia/Calcutta", 0x0, 0xb4045458},
    {"Asia/Chita", 0x0, 0x60911eb7}, {"Asia/Colombo", 0x0, 0x9d4e767a}, {"Asia/Damascus", 0x0, 0x5f0c5df3},
    {"Asia/Dhaka", 0x0, 0x4ac9708b}, {"Asia/Dubai", 0x0, 0x82ebe040}, {"Asia/Hebron", 0x800, 0xe4e4f364},
    {"Asia/Hovd", 0x0, 0xf22b8583}, {"Asia/Irkutsk", 0x0, 0xe05f4395}, {"Asia/Jerusalem", 0x0, 0x18fe6a6b},
    {"Asia/Kabul", 0x0, 0x93495c48}, {"Asia/Kamchatka", 0x600, 0xa4e2fca2}, {"Asia/Karachi", 0x0, 0x1db6ee0b},
    {"Asia/Katmandu", 0x0, 0x3c33125c}, {"Asia/Krasnoyarsk", 0x0, 0xbb49a094}, {"Asia/Magadan", 0x0, 0x8795565e},
    {"Asia/Novosibirsk", 0x0, 0xadcbe01c}, {"Asia/Omsk", 0x0, 0xcf0d78e}, {"Asia/Pyongyang", 0x0, 0x7f68b701},
    {"Asia/Qyzylorda", 0x0, 0xa727c684}, {"Asia/Rangoon", 0x0, 0xd4bf4c68}, {"Asia/Riyadh", 0x0, 0x6230e830},
    {"Asia/Sakhalin", 0x0, 0x8da11cdc}, {"Asia/Seoul", 0x0, 0x2692b890}, {"Asia/Shanghai", 0x0, 0x5d7c080},
    {"Asia/Singapore", 0x0, 0x5d7c080}, {"Asia/Srednekolymsk", 0x0, 0xd0220de4}, {"Asia/Taipei", 0x0, 0x5d7c080},
    {"Asia/Tashkent", 0x0, 0xa3a6d850}, {"Asia/Tbilisi", 0x10, 0x528ca629}, {"Asia/Tehran", 0x0, 0x91ee1c80},
    {"Asia/Tokyo", 0x0, 0x2692b890}, {"Asia/Tomsk", 0x4, 0xae8810fe}, {"Asia/Ulaanbaatar", 0x0, 0xbdd52ae2},
    {"Asia/Vladivostok", 0x0, 0x945c815a}, {"Asia/Yakutsk", 0x0, 0xbbb220ce}, {"Asia/Yekaterinburg", 0x0, 0xf1223de},
    {"Asia/Yerevan", 0x0, 0x48dbb422}, {"Atlantic/Azores", 0x0, 0x7146dd21}, {"Atlantic/Cape_Verde", 0x0, 0x43e54081},
    {"Atlantic/Reykjavik", 0x0, 0x0}, {"Australia/Adelaide", 0x0, 0xcf7a83d0}, {"Australia/Brisbane", 0x0, 0x474db0a0},
    {"Australia/Darwin", 0x0, 0x36f03498}, {"Australia/Eucla", 0x0, 0xa7b823ae}, {"Australia/Hobart", 0x0, 0xeca55204},
    {"Australia/Lord_Howe", 0x0, 0x15c1b181}, {"Australia/Perth", 0x0, 0x5a175ae2},
    {"Australia/Sydney", 0x0, 0xb045e071}, {"Etc/GMT+11", 0x0, 0xfc978fe1}, {"Etc/GMT+12", 0x0, 0xdbdc97d1},
    {"Etc/GMT+2", 0x0, 0x232a4871}, {"Etc/GMT+8", 0x0, 0x5ec87811}, {"Etc/GMT+9", 0x0, 0x3e0d8001},
    {"Etc/GMT-12", 0x0, 0x88c3a0c0}, {"Etc/GMT-13", 0x0, 0xa97e98d0}, {"Etc/UTC", 0x0, 0x0},
    {"Europe/Astrakhan", 0x0, 0xfdb3aee1}, {"Europe/Berlin", 0x0, 0x2fc8804b}, {"Europe/Bucharest", 0x0, 0xf0951e0},
    {"Europe/Budapest", 0x0, 0x2fc8804b}, {"Europe/Chisinau", 0x0, 0x24e58a17}, {"Europe/Istanbul", 0x4800, 0x980f7a8c},
    {"Europe/Kaliningrad", 0x0, 0x9109e69c}, {"Europe/Kiev", 0x0, 0xf0951e0}, {"Europe/London", 0x0, 0x5087aeb6},
    {"Europe/Minsk", 0x0, 0xdf746b5c}, {"Europe/Moscow", 0x0, 0x37bdf7b9}, {"Europe/Paris", 0x0, 0x2fc8804b},
    {"Europe/Samara", 0x600, 0xd8c4dccc}, {"Europe/Saratov", 0x0, 0x9a5b5634}, {"Europe/Volgograd", 0x0, 0xd8d9641b},
    {"Europe/Warsaw", 0x0, 0x2fc8804b}, {"Indian/Mauritius", 0x0, 0xbf361fa}, {"Pacific/Apia", 0x800, 0x4438f54e},
    {"Pacific/Auckland", 0x0, 0x3ffe8258}, {"Pacific/Bougainville", 0x0, 0x8dfc564a},
    {"Pacific/Chatham", 0x0, 0x2ad7c677}, {"Pacific/Easter", 0x0, 0x7ef12737}, {"Pacific/Fiji", 0x0, 0xf32448cc},
    {"Pacific/Guadalcanal", 0x0, 0x6808a8b0}, {"Pacific/Honolulu", 0x0, 0x1d5287f1},
    {"Pacific/Kiritimati", 0x0, 0xca3990e0}, {"Pacific/Marquesas", 0x0, 0x2db003f9},
    {"Pacific/Norfolk", 0x0, 0x4d0fa654}, {"Pacific/Port_Moresby", 0x0, 0x474db0a0},
    {"Pacific/Tongatapu", 0x0, 0x6b1946b2},
};
// clang-format on
} // namespace zones
