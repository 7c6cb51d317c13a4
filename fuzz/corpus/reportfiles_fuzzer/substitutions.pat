"/home/me/docs","http://server/docs"
"/data","Z:/data"
"unterminated,x
