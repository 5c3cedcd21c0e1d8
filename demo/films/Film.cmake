# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
#
# How a film, a poster and a sound are made. The same bytes every time: one thread, no dates.

set(ffmpeg ${FFMPEG} -y -loglevel error -threads 1 -filter_threads 1 -filter_complex_threads 1)
set(exact -threads 1 -fflags +bitexact -flags:v +bitexact -flags:a +bitexact)
set(picture_encoding -c:v libx264 -preset ultrafast -crf 30 -maxrate 260k -bufsize 520k -g 48
  -pix_fmt yuv420p -an)

# Titles need a font, which not every machine has.
execute_process(COMMAND ${FFMPEG} -loglevel quiet -f lavfi -i color=s=64x64
  -vf drawtext=font=Serif:text=A -frames:v 1 -f null - RESULT_VARIABLE without_titles)

# The drawtext filters for the lines of a title, centred over `bottom` picture heights.
function(title_filters variable size bottom)
  set(filters)
  list(LENGTH ARGN left)
  foreach(line IN LISTS ARGN)
    math(EXPR left "${left}-1")
    string(APPEND filters ",drawtext=font='${title_font}':text='${line}':fontsize='min(h*${size},w*0.07)'"
      ":fontcolor=white:shadowcolor=black@0.55:shadowx=2:shadowy=2:x=(w-text_w)/2"
      ":y=h*(1-${bottom}-${left}*${size}*1.3)")
  endforeach()
  if(without_titles)
    set(filters)
  endif()
  set(${variable} "${filters}" PARENT_SCOPE)
endfunction()
set(title_font Serif)

function(placed variable picture size small start)
  string(REPLACE "@SIZE" ${size} picture "${picture}")
  string(REPLACE "@SMALL" ${small} picture "${picture}")
  string(REPLACE "@START" ${start} picture "${picture}")
  set(${variable} "${picture}" PARENT_SCOPE)
endfunction()

# tavelo_poster(NAME PICTURE SMALL FRAME [line of the title…]) : FRAME of the picture, darkened
# where the title stands.
function(tavelo_poster name picture small frame)
  title_filters(title 0.058 0.14 ${ARGN})
  placed(picture "${picture}" 400x560 ${small} 8)
  set(shade "geq=lum='16+(lum(X,Y)-16)*(1-0.7*clip((Y/H-0.6)*3,0,1))':cb='cb(X,Y)':cr='cr(X,Y)'")
  add_custom_command(OUTPUT ${TAVELO_FILMS}/${name}.jpg
    COMMAND ${ffmpeg}
      -filter_complex "${picture},trim=start_frame=${frame},format=yuv444p,setsar=1,${shade}${title}"
      -frames:v 1 -q:v 3 -pix_fmt yuvj420p ${exact} ${TAVELO_FILMS}/${name}.jpg
    COMMENT "Drawing ${name}.jpg" VERBATIM)
  set_property(GLOBAL APPEND PROPERTY TAVELO_FILM_FILES ${TAVELO_FILMS}/${name}.jpg)
endfunction()

# tavelo_film(FILE SECONDS PICTURE SHOWN SMALL TITLE SOUND [ffmpeg options…])
# A title of 5 s, then the picture's first 20 s again and again until SECONDS are over.
function(tavelo_film file seconds picture shown small title sound)
  get_filename_component(stem ${file} NAME_WE)
  title_filters(title 0.08 0.2 ${title})
  placed(picture "${picture}" ${shown} ${small} 0)
  set(work ${TAVELO_FILMS}/${stem}.work)
  math(EXPR periods "${seconds}/20+1")
  string(REPEAT "file period.mkv\n" ${periods} reels)
  file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${stem}.reels "file title.mkv\n${reels}")
  add_custom_command(OUTPUT ${TAVELO_FILMS}/${file}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${work}
    COMMAND ${ffmpeg} -filter_complex "${picture},format=yuv420p,setsar=1" -t 20
      ${picture_encoding} ${exact} ${work}/period.mkv
    COMMAND ${ffmpeg} -i ${work}/period.mkv -vf "null${title}" -t 5 ${picture_encoding} ${exact}
      ${work}/title.mkv
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_BINARY_DIR}/${stem}.reels ${work}/reels
    COMMAND ${ffmpeg} -f concat -i ${work}/reels ${sound} -map 0:v ${ARGN} -t ${seconds} -c:v copy
      -c:a aac -b:a 24k ${exact} ${TAVELO_FILMS}/${file}
    COMMAND ${CMAKE_COMMAND} -E rm -r ${work}
    COMMENT "Filming ${file}" VERBATIM)
  set_property(GLOBAL APPEND PROPERTY TAVELO_FILM_FILES ${TAVELO_FILMS}/${file})
endfunction()

# tavelo_thumbnails(FILE SECOND…) : small pictures of a film, STEM_000030.jpg and so on.
function(tavelo_thumbnails file)
  get_filename_component(stem ${file} NAME_WE)
  foreach(second ${ARGN})
    string(LENGTH ${second} digits)
    math(EXPR missing "6-${digits}")
    string(REPEAT 0 ${missing} zeros)
    set(picture ${TAVELO_FILMS}/${stem}_${zeros}${second}.jpg)
    add_custom_command(OUTPUT ${picture}
      COMMAND ${ffmpeg} -ss ${second} -i ${TAVELO_FILMS}/${file} -frames:v 1 -vf scale=160:-2
        -q:v 5 -pix_fmt yuvj420p ${exact} ${picture}
      DEPENDS ${TAVELO_FILMS}/${file} VERBATIM)
    set_property(GLOBAL APPEND PROPERTY TAVELO_FILM_FILES ${picture})
  endforeach()
endfunction()

# Options for an input that hums the given tones, which return to where they were after 20 s.
function(chord variable)
  set(inputs)
  foreach(hertz ${ARGN})
    list(APPEND inputs "0.05*sin(2*PI*${hertz}*t)*(0.6+0.4*sin(0.3*PI*t+${hertz}))")
  endforeach()
  list(JOIN inputs "+" sum)
  set(${variable} -f lavfi -i "aevalsrc=${sum}:s=16000:d=20,aloop=-1:320000:0" PARENT_SCOPE)
endfunction()
