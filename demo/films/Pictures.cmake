# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
#
# What the films show, as ffmpeg filter graphs. @SIZE stands for the size of the picture, @SMALL for
# that of parts which are drawn anew in every frame, @START for the second at which those begin.
# Layers that keep their shape are drawn once and moved by filters: that is a hundred times cheaper.

# The place in the picture, in picture heights; the angle around it; the angle that turns in 20 s.
set(x "((X-W/2)/H)")
set(y "(Y/H)")
set(u "(2*PI*X/W)")
set(p "((T+@START)*PI/10)")
set(held "trim=end_frame=1,loop=-1:1:0,setpts=N/12/TB")
set(black "color=black:s=@SIZE:r=12")

function(drawn variable red green blue)
  set(${variable} "nullsrc=s=@SIZE:r=12,format=gbrp,geq=r='clip(${red},0,255)':g='clip(${green},0,255)':b='clip(${blue},0,255)',${held}"
    PARENT_SCOPE)
endfunction()

# One colour, seen where `cover` is 1.
function(layer variable colour cover)
  set(${variable} "color=${colour}:s=@SIZE:r=12,format=gbrap,geq=r='r(X,Y)':g='g(X,Y)':b='b(X,Y)':a='255*clip(${cover},0,1)',${held}"
    PARENT_SCOPE)
endfunction()

# A light that changes all the time: `light` from 0 to 1, in a colour given per channel from 0 to 1.
function(glow variable light red green blue)
  set(${variable} "nullsrc=s=@SMALL:r=12,format=gray,geq=lum='255*clip(${light},0,1)',scale=@SIZE:flags=bicubic,format=gbrp,lutrgb=r='val*${red}':g='val*${green}':b='val*${blue}'"
    PARENT_SCOPE)
endfunction()

# Ridges that pass before a low sun.
set(sun "hypot(${x}-0.1,${y}-0.36)")
drawn(sky "70+240*${y}+60*exp(-${sun}/0.2)+255*clip((0.085-${sun})*70,0,1)"
  "44+195*${y}+70*exp(-${sun}/0.2)+180*clip((0.085-${sun})*70,0,1)"
  "110+20*${y}+80*clip((0.085-${sun})*70,0,1)")
layer(far "#985478" "(${y}-0.54-0.06*sin(${u})-0.025*sin(3*${u}+1)-0.008*sin(11*${u}))*90")
layer(middle "#563062" "(${y}-0.68-0.06*sin(2*${u}+1)-0.02*sin(5*${u})-0.006*sin(17*${u}))*90")
layer(near "#1c1434" "(${y}-0.85-0.05*sin(2*${u}+2)-0.025*sin(3*${u})-0.006*sin(23*${u}))*90")
set(dusk "${sky}[a];${far},scroll=h=0.0004[b];${middle},scroll=h=0.001[c];${near},scroll=h=0.0025[d];[a][b]overlay[e];[e][c]overlay[f];[f][d]overlay")

# Paper lanterns rising from a lake, some of them far away.
function(lanterns_of variable count size)
  set(sum)
  foreach(i RANGE 1 ${count})
    math(EXPR at "(${i}*61+${count}*7)%101-50")
    math(EXPR above "(${i}*37)%80+10")
    set(distance "((${x}-0.0085*${at})*(${x}-0.0085*${at})*1.5+(${y}-0.01*${above})*(${y}-0.01*${above}))/${size}/${size}")
    list(APPEND sum "1/(1+pow(${distance},3))+0.25/(1+0.2*${distance})")
  endforeach()
  list(JOIN sum "+" sum)
  set(${variable} "nullsrc=s=@SIZE:r=12,format=gray,geq=lum='min(255,210*(${sum}))',${held},format=gbrp,lutrgb=r='val':g='val*0.62':b='val*0.24'"
    PARENT_SCOPE)
endfunction()
drawn(lake "14+70*exp(-pow((${y}-0.8)/0.18,2))" "16+34*exp(-pow((${y}-0.8)/0.18,2))"
  "52+44*exp(-pow((${y}-0.8)/0.18,2))")
lanterns_of(few 5 0.038)
lanterns_of(many 9 0.019)
set(lanterns "${lake}[a];${few},scroll=v=0.0032:h=0.0004[b];${many},scroll=v=0.0017:h=-0.0005[c];[a][b]blend=all_mode=screen[d];[d][c]blend=all_mode=screen")

# Curtains of light over black hills.
set(stars "gt(mod(abs(sin(X*12.9898+Y*78.233)*43758.5),1),0.9972)*150")
set(curve "(0.46+0.09*sin(${x}*4+${p})+0.04*sin(${x}*9-2*${p}))")
set(fold "(0.62+0.38*sin(${x}*38+7*sin(${x}*4+${p})+3*${p}))")
drawn(night "12+${stars}" "14+${stars}" "44+${stars}")
layer(hills "#04060e" "(${y}-0.86-0.05*sin(${u}+1)-0.02*sin(4*${u}))*60")
glow(curtain "${fold}*exp(-abs(${y}-${curve})/if(gt(${y},${curve}),0.06,0.2))" 0.08 0.9 0.5)
glow(veil "${fold}*exp(-pow((${y}-${curve}+0.26)/0.16,2))" 0.42 0.08 0.5)
set(aurora "${night}[a];${curtain}[b];${veil}[c];${hills}[d];[a][b]blend=all_mode=screen[e];[e][c]blend=all_mode=screen[f];[f][d]overlay")

# A pale sun and its road on the water.
set(depth "max(${y}-0.455,0.01)")
set(ball "clip((0.1-hypot(${x},${y}-0.3))*60,0,1)")
drawn(bay "if(lt(${y},0.46),236-70*(0.46-${y})+40*${ball},34+60*${depth})"
  "if(lt(${y},0.46),184-90*(0.46-${y})+56*${ball},78+40*${depth})"
  "if(lt(${y},0.46),158+60*(0.46-${y})+40*${ball},104+20*${depth})")
glow(waves "gt(${y},0.46)*pow(abs(sin(1.6/${depth}+${x}*5/(${depth}*6+0.5)+4*${p})*cos(0.9/${depth}-3*${p}+sin(${x}*7)*2)),1.4)*(0.15+0.85*exp(-pow(${x}/(0.07+${depth}*0.5),2)))"
  0.9 0.72 0.5)
set(harbour "${bay}[a];${waves}[b];[a][b]blend=all_mode=screen")

# A dahlia that turns about itself, petals one way and heart the other.
set(r "hypot((X-W/2)/W,(Y-H/2)/W)")
set(a "atan2(Y-H/2,X-W/2)")
function(blossom variable turns petals radius red green blue)
  set(shape "pow(abs(cos(${a}*${petals}+${turns}*${r})),0.7)*pow(abs(cos(${r}*26)),0.5)")
  set(cover "clip((${radius}*(0.93+0.07*cos(2*${petals}*${a}+2*${turns}*${r}))-${r})*40,0,1)")
  set(${variable} "nullsrc=s=@SIZE:r=12,format=gbrap,geq=r='${red}*(0.5+0.5*${shape})':g='${green}*(0.4+0.6*${shape})*(0.4+2*${r})':b='${blue}*(0.6+0.4*${shape})':a='255*${cover}',${held}"
    PARENT_SCOPE)
endfunction()
drawn(garden "20+30*${y}" "56+26*${y}" "50+16*${y}")
blossom(outer 10 4 0.47 252 100 164)
blossom(heart -16 3 0.2 255 190 130)
set(petals "${garden}[a];${outer},rotate=a='PI*(t+@START)/10':c=none[b];${heart},rotate=a='-PI*(t+@START)/5':c=none[c];[a][b]overlay[d];[d][c]overlay")

# Colours without things.
glow(flow "0.5+0.25*(sin(${x}*4+${p}+2*sin(${y}*3-${p}))+sin(${y}*6-2*${p}+2*sin(${x}*3+${p})))" 1 1 1)
set(plasma "${flow},lutrgb=r='140+100*sin(val/40+0.2)':g='90+70*sin(val/40+1.9)':b='142+92*sin(val/40+3.6)'")

# Rain over a street between lit windows, seen from a passing car.
set(row "if(lt(${y},0.68),${y},0.68-(${y}-0.68)*1.9)")
set(house "floor(8*X/W)")
set(lit "(0.5+0.5*sin(${house}*7.3+floor((${row})*18.46)*3.7+floor(24*X/W)*5.1))")
set(window "pow(abs(sin(12*${u})),1.6)*pow(abs(sin((${row})*58)),1.6)*${lit}")
set(roof "gt(${row},0.2+0.13*sin(${house}*2.4))")
set(sign "exp(-pow((${x}-0.16)/0.022,2))*clip((0.15-abs((${row})-0.42))*40,0,1)")
set(circle "exp(-pow(hypot(${x}+0.17,(${row})-0.5)/0.08-1,2)*14)")
set(wet "(1-0.4*gt(${y},0.68))")
drawn(city "${wet}*(26+30*(${row})+(${window}*150-14)*${roof}+250*${sign}+40*${circle})"
  "${wet}*(14+12*(${row})+(${window}*92-8)*${roof}+60*${sign}+190*${circle})"
  "${wet}*(52+40*(${row})+(${window}*34-20)*${roof}+150*${sign}+210*${circle})")
set(drop "gt(mod(abs(sin(floor(X/2)*12.9898)*43758.5),1),0.8)*pow(0.5+0.5*sin(2*PI*Y/H*3+X*9.7),40)")
set(rain "nullsrc=s=@SIZE:r=12,format=gray,geq=lum='90*${drop}',${held},format=gbrp")
set(neon "${city},scroll=h=0.0012[a];${rain},scroll=v=-0.06[b];[a][b]blend=all_mode=screen")

# A lighthouse that looks around.
set(lx "(${x}-0.08)")
set(ly "(${y}-0.3)")
set(rock "clip((${y}-0.78-2*${lx}*${lx}-0.015*sin(${x}*40))*80,0,1)*clip((0.32-abs(${lx}))*60,0,1)")
set(tower "clip((0.028+0.035*${ly}-abs(${lx}))*160,0,1)*clip(${ly}*160,0,1)*(1-${rock})")
set(band "lt(mod(${ly}*7.2,1),0.5)")
set(dark "(1-${rock})*(1-${tower})")
set(swell "gt(${y},0.8)*(0.5+0.5*sin(2.4/max(${y}-0.74,0.02)+9*${x}))")
drawn(coast "${dark}*(18+50*${y}*${y}+16*${swell}+${stars}*lt(${y},0.75))+${tower}*(150+80*${band})+14*${rock}"
  "${dark}*(30+50*${y}+36*${swell}+${stars}*lt(${y},0.75))+${tower}*(40+176*${band})+16*${rock}"
  "${dark}*(68+44*${y}+40*${swell}+${stars}*lt(${y},0.75))+${tower}*(48+150*${band})+28*${rock}")
set(turn "(atan2(${ly},${lx})-PI-0.45*sin(${p})-0.6*sin(2*${p}))")
glow(beam "exp(-pow(sin(${turn}/2)/0.09,2)-hypot(${lx},${ly})/0.6)+1.2*exp(-hypot(${lx},${ly})/0.035)" 1 0.9 0.6)
set(manara "${coast}[a];${beam}[b];[a][b]blend=all_mode=screen")

# An old photograph of nobody.
set(oval "exp(-pow(hypot(${x}/0.29,(${y}-0.4)/0.34),6))")
set(sitter "max(clip((0.1-hypot(${x}-0.02,(${y}-0.33)*0.82))*40,0,1),clip((0.2-hypot(${x}*0.92,${y}-0.67))*40,0,1))")
set(grey "(0.3+0.62*${oval}*(1-0.72*${sitter}))")
drawn(stills "236*${grey}" "204*${grey}" "160*${grey}")

# Two stones in a pond.
set(rings "(sin(hypot(${x}-0.16,${y}-0.3)*58)+sin(hypot(${x}+0.2,${y}-0.72)*58))")
drawn(theora "30+20*${rings}+60*${y}" "112+44*${rings}" "120+34*${rings}-30*${y}")

# Two colours that run down and across a pattern of black and white.
function(coloured variable pattern red green blue)
  set(cross "nullsrc=s=@SIZE:r=12,format=gbrp,geq=r='${red}':g='${green}':b='${blue}',${held}")
  set(${variable} "${pattern},format=gray,scale=@SIZE:flags=neighbor,format=gbrp[a];${cross}[b];[a][b]blend=all_mode=multiply,lutrgb=r='max(val,34)':g='max(val,20)':b='max(val,54)'"
    PARENT_SCOPE)
endfunction()
coloured(loom "cellauto=s=@SMALL:rule=18:r=12:seed=3:scroll=1:full=1"
  "250-60*${y}" "196-120*${y}" "120+60*sin(X/W*PI)")
coloured(steps "sierpinski=s=@SMALL:r=12:type=carpet:jump=30:seed=9"
  "240-120*${y}" "150+80*${y}" "140+60*X/W")
set(colony "life=s=@SMALL:r=6:mold=24:ratio=0.3:seed=7:rule=B3/S23:life_color=#ffd166:death_color=#ef476f:mold_color=#0b3954,scale=@SIZE:flags=neighbor")
set(deep "mandelbrot=s=@SMALL:r=12:maxiter=300:start_scale=0.6:end_scale=0.0012:end_pts=260:start_x=-0.743643887:start_y=-0.131825904,hue=h=150:s=0.75,scale=@SIZE:flags=bicubic")
set(card "testsrc2=s=@SIZE:r=12,hue=s=0.6")
