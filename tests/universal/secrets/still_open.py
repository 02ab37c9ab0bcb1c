"""Roads that still lead to a secret, by group; `secrets_test.py PROGRAM GROUP open` runs them."""

STILL_OPEN = {
    "media": {
        "hls sound", "hls sound by address", "hls sound beside", "hls sound above", "hls film", "hls film above", "hls map", "hls snapshot",
        "dash film", "concat sound beside", "concat film beside", "concat text beside", "concat picture beside"},
    "markup": {"html background", "html style sheets", "html form picture", "html drawing in an address"},
    "office": {
        "docx drawings", "odt pictures and background of a page", "odt picture and drawing", "odt backgrounds and bullets",
        "ods formulas and pictures", "xlsx drawing", "pptx pictures and background", "pptx drawing", "pptx film and object",
        "web page as rtf", "drawing as ppt", "text as docx", "rtf picture", "rtf picture beside"},
}
