# Writes TEMPLATE to TARGET with the text of BUNDLE in its place.
file(READ ${BUNDLE} AUTOCONSENT_BUNDLE)
configure_file(${TEMPLATE} ${TARGET} @ONLY)
file(TOUCH ${TARGET})
