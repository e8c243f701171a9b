# Writes FILE, which names COMPANY and PRODUCT, if there is none.
if(NOT EXISTS ${FILE})
  file(WRITE ${FILE} "[Product]\r\nCompanyName=${COMPANY}\r\nProductName=${PRODUCT}\r\n")
endif()
