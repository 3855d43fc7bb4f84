# What a distributor changes: who stands behind the program. The texts go through the forms' XML,
# so "&" is written "&amp;".
set(CORVANE_HOME_PAGE "https://corvane.example" CACHE STRING "Home page that the About box opens")
set(CORVANE_SUPPORT_MAIL "support@corvane.example" CACHE STRING "Support address in the About box")
set(CORVANE_COPYRIGHT "Copyright © 2026 The Corvane developers" CACHE STRING
    "Copyright line of the About box")
set(CORVANE_APP_ID "example.corvane.corvane" CACHE STRING
    "Home page's domain backwards and the program's name, for the software centre and for macOS")
set(CORVANE_MAINTAINER "The Corvane developers <${CORVANE_SUPPORT_MAIL}>" CACHE STRING
    "Who answers for the packages")
set(CORVANE_LICENCE "The source states no licence. All rights are as stated by the distributor."
    CACHE STRING "Terms in the Debian package's copyright file")

# The About box writes its links without quotes, where a slash at the end closes the tag.
if(CORVANE_HOME_PAGE MATCHES "[/ ]$")
    message(FATAL_ERROR "CORVANE_HOME_PAGE must not end with a slash or a blank")
endif()
