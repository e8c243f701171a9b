// Company, product and version of this build, as macros because the version resources include this file too.
#pragma once

#define RKUINFO_COMPANY "Norvik"
#define RKUINFO_PRODUCT "TARVO"
#define RKUINFO_VERSION "2018"
#define RKUINFO_SERVICE_PACK "SP2"
#define RKUINFO_BUILD_STAMP "2018.03.16(29562)_x64"
#define RKUINFO_FILE_VERSION "2018.3.16.29562" // the numbers in the build stamp
#define RKUINFO_FILE_VERSION_WORDS 2018, 3, 16, 29562
#define RKUINFO_PRODUCT_VERSION_WORDS 2018, 0, 0, 0
