# What a distributor changes: who stands behind the program. The texts go through the forms' XML,
# so "&" is written "&amp;".
set(CORVANE_HOME_PAGE "https://corvane.example" CACHE STRING "Home page that the About box opens")
set(CORVANE_SUPPORT_MAIL "support@corvane.example" CACHE STRING "Support address in the About box")
set(CORVANE_COPYRIGHT "Copyright © 2026 The Corvane developers" CACHE STRING
    "Copyright line of the About box")

# The About box writes its links without quotes, where a slash at the end closes the tag.
if(CORVANE_HOME_PAGE MATCHES "[/ ]$")
    message(FATAL_ERROR "CORVANE_HOME_PAGE must not end with a slash or a blank")
endif()
