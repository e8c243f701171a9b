// String ids of RkUInfoRes.dll: the name of each language in the language of that library.
#define IDS_CZECH 1001
#define IDS_GERMAN 1002
#define IDS_ENGLISH 1003
#define IDS_SPANISH 1004
#define IDS_FRENCH 1005
#define IDS_HUNGARIAN 1006
#define IDS_ITALIAN 1007
#define IDS_JAPANESE 1008
#define IDS_KOREAN 1009
#define IDS_POLISH 1010
#define IDS_PORTUGUESE 1011
#define IDS_RUSSIAN 1012
#define IDS_TURKISH 1013
#define IDS_SIMPLIFIED_CHINESE 1014
#define IDS_TRADITIONAL_CHINESE 1015
#define IDS_UNKNOWN 1103
